#include "client/settings/SettingsFile.h"

#include <windows.h>
#include <gmock/gmock.h>

#include "client/catalog/PathSpelling.h"

namespace qm::tests {

namespace {

using ::testing::HasSubstr;
using ::testing::StartsWith;

/// What is said of a file with this text, without the file; empty if it is right.
std::string FindProblem(const std::string& text) {
  try {
    mmcat::ParseSettings("C:\\team\\mmcat.toml", text);
  } catch (const mmcat::SettingsError& error) {
    const std::string problem = error.what();
    const size_t line = problem.find(".toml:");
    return line == std::string::npos ? problem : problem.substr(line + 6);
  }
  return "";
}

std::string Repeat(const std::string& text, size_t count) {
  std::string repeated;
  for (size_t i = 0; i < count; ++i) {
    repeated += text;
  }
  return repeated;
}

TEST(SettingsFileTest, AWrongFileIsRefusedWithThePlaceAndWhatToDo) {
  const std::string deepKey = "a" + Repeat(".a", 190);
  const struct {
    std::string text;
    const char* position;
    const char* problem;
  } files[] = {
      {"[check]\nignore = [", "2:", "end-of-file"},
      {"[catalog]\nfolder = modules", "2:10: ", "put texts into quotes"},
      {"[catalog]\nfolder = \"C:\\modules\"", "2:", R"(single quotes: 'C:\Modules')"},
      {"[catalog]\nfolder = \"C:\\new\"", "2:10: ", "has a control character"},
      {"[check]\nignore = \"\xff\"", "2:", "save the file as UTF-8"},
      {std::string("\xff\xfe[\0c\0", 6), "1:1: ", "save the file as UTF-8"},
      {"[check]\r\n[check]", "2:1: ", "check is there twice"},
      {"wide = true\nwide = 1", "2:", "wide is there twice"},
      {"d = 1979-05-27", "1:1: ", "unknown setting d outside of a table"},
      {"[check]\n" + Repeat("y", 5000) + " = 1", "2:1: ", " ... yy"},
      {"[chek]", "1:2: ", "unknown table [chek]; did you mean check"},
      {"[zzzz]", "1:2: ", "unknown table [zzzz]; mmcat help config shows an example"},
      {"folder = \"a\"", "1:1: ", "folder belongs in the table [catalog]"},
      {"[check]\nfolder = \"a\"", "2:1: ", "folder belongs in the table [catalog]"},
      {"[check]\nfail_on = \"note\"", "2:1: ", "unknown setting fail_on; did you mean fail-on"},
      {"[check]\nwrite-baseline = true", "2:1: ", "only be given on the command line"},
      {"check = 1", "1:1: ", "check must be a table: a line [check]"},
      {"[[check]]", "1:3: ", "check must be a table"},
      {"[catalog]\nrecursive = \"yes\"", "2:13: ", "recursive must be true or false"},
      {"[check]\nbaseline = [\"a\"]", "2:12: ", "baseline must be a text"},
      {"[check]\nignore = [\"a\",\n1979-05-27]", "3:1: ", "must be a text or a list of texts"},
      {"[check]\nbaseline = \"\"", "2:12: ", "baseline is empty"},
      {"[check]\nignore = " + Repeat("[", 100000), "2:", "nested too deeply"},
      {"[check]\nignore = " + Repeat("{a=", 100000), "2:", "nested too deeply"},
      {"[check]\n" + Repeat("a.", 100000) + "a = 1", "2:1: ", "the line is too long"},
      // As deep as the library goes.
      {"[" + deepKey + "]\n" + deepKey + " = " + Repeat("[\n{" + deepKey + " = ", 7) + "1" +
           Repeat("}]", 7),
       "1:2: ", "unknown table [a]"},
  };
  for (const auto& [text, position, problem] : files) {
    EXPECT_THAT(FindProblem(text), AllOf(StartsWith(position), HasSubstr(problem)))
        << text.substr(0, 80);
  }
  for (const char* const text : {"", "# nothing", "\xEF\xBB\xBF[check]\r\nfail-on = \"note\"\r\n",
                                 "check.fail-on = 'note'", "[check]\nignore = []"}) {
    EXPECT_EQ("", FindProblem(text)) << text;
  }
}

TEST(SettingsFileTest, PathsAreRelativeToTheFolderOfTheFile) {
  mmcat::UsePathSpelling(mmcat::PathSpelling::Windows);
  const struct {
    const char* file;
    const char* text;
    const char* path;
  } paths[] = {
      {R"(C:\team\mmcat.toml)", R"(modules)", R"(C:\team\modules)"},
      {R"(C:\team\mmcat.toml)", R"(../my modules/a)", R"(C:\my modules\a)"},
      {R"(C:\mmcat.toml)", R"(.\modules)", R"(C:\modules)"},
      {R"(C:\team\mmcat.toml)", R"(D:\modules)", R"(D:\modules)"},
      {R"(C:\team\mmcat.toml)", R"(d:/modules)", R"(d:\modules)"},
      {R"(C:\team\mmcat.toml)", R"(\\server\share\a)", R"(\\server\share\a)"},
      {R"(C:\team\mmcat.toml)", R"(\modules)", R"(C:\modules)"},
      {R"(\\server\share\team\mmcat.toml)", R"(\modules)", R"(\\server\share\modules)"},
      {R"(\\server\share\mmcat.toml)", R"(modules)", R"(\\server\share\modules)"},
  };
  for (const auto& [file, text, path] : paths) {
    const mmcat::SettingsFile settings = mmcat::ParseSettings(file, "");
    EXPECT_EQ(path, mmcat::ResolvePath(settings, {text, {}})) << file << ", " << text;
  }
  const mmcat::SettingsFile settings = mmcat::ParseSettings(R"(C:\team\mmcat.toml)", "");
  EXPECT_THROW(mmcat::ResolvePath(settings, {"D:modules", {1, 1}}), mmcat::SettingsError);
  mmcat::UsePathSpelling(mmcat::PathSpelling::Native);
  if (::GetProcAddress(::GetModuleHandleW(L"kernel32.dll"), "wine_get_unix_file_name")) {
    EXPECT_EQ("/srv/modules", mmcat::ResolvePath(settings, {"/srv/modules", {}}));
  }
}

}  // namespace

}  // namespace qm::tests

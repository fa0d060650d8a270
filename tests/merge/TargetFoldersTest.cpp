#include "merge/TargetFolders.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>

#include "merge/ReadModule.h"
#include "tests/support/DatabaseFile.h"
#include "tests/support/InstallerTables.h"

namespace qm::tests {

namespace {

/// The folder as a line: the path, then what is special about it.
std::string Describe(const merge::TargetFolder& folder) {
  std::string text = merge::FormatTargetFolder(folder);
  text += folder.isPredefined ? " predefined" : "";
  text += folder.isSetByAction ? " action" : "";
  text += folder.redirected.empty() ? "" : " redirected:" + folder.redirected;
  text += folder.item.empty() ? "" : " item:" + folder.item;
  const char* const ends[] = {"", " missing", " circle", " run time", " limit"};
  return text + ends[static_cast<int>(folder.end)];
}

merge::Module Read(const DatabaseImage& image) {
  MemorySource source = WriteCompoundFile(WriteDatabase(image)).Source();
  merge::Module module = merge::ReadModule(source, merge::DecodeCommonCodePage);
  EXPECT_EQ("", module.failure);
  return module;
}

TEST(TargetFoldersTest, ADirectoryIsWhereAnInstallerMakesIt) {
  merge::Module module;
  module.directories = {
      {"TARGETDIR", "", "SourceDir"},
      {"SystemFolder.1", "TARGETDIR", "SysDir"},
      {"System64Folder", "TARGETDIR", "."},
      {"DesktopFolder.1.2", "Gone", "x|y"},
      {"systemfolder.1", "TARGETDIR", "sys"},
      {"Drivers.1", "SystemFolder.1", "DRIVER~1|drivers:src|source"},
      {"Etc.1", "Drivers.1", "etc:."},
      {"Same.1", "Etc.1", ".:src"},
      {"Config.1", "Same.1", ".config"},
      {"Own.1", "TARGETDIR", "."},
      {"Bin.1", "Own.1", "bin"},
      {"Root.1", "Root.1", "Root"},
      {"InRoot.1", "Root.1", "in"},
      {"Lost.1", "Gone", "lost"},
      {"A.1", "B.1", "a"},
      {"B.1", "A.1", "b"},
      {"Sxs.1", "TARGETDIR", "sxs"},
      {"InSxs.1", "Sxs.1", "in"},
      {"WindowsFolder.1", "TARGETDIR", "win"},
      {"TempFolder", "TARGETDIR", "."},
      {"Fixed.1", "TARGETDIR", "fixed"},
      {"Through.1", "TARGETDIR", "through"},
      {"Variable.1", "TARGETDIR", "variable"},
      {"Loop.1", "TARGETDIR", "loop"},
      {"Script.1", "TARGETDIR", "script"},
      {"Empty.1", "TARGETDIR", "empty"},
      {"Filled.1", "TARGETDIR", "filled"},
      {"Below.1", "Filled.1", "below"},
      {"Folders.1", "TARGETDIR", "folders"},
      {"Open.1", "TARGETDIR", "open"},
      {"Disk.1", "TARGETDIR", "disk"},
      {"Full.1", "TARGETDIR", "full"},
  };
  module.customActions = {
      {"1", 51 + 0x100, "Sxs.1", "[WindowsFolder]winsxs\\x\\"},
      {"2", 51, "WindowsFolder.1", "[WindowsFolder]"},
      {"3", 51, "TempFolder", "[TempFolder]own"},
      {"4", 35, "Fixed.1", "C:\\Fixed\\"},
      {"5", 51, "Through.1", "[MINE]\\[Other]"},
      {"6", 51, "MINE", "[Drivers.1]mine"},
      {"7", 51, "Variable.1", "[%ProgramData]\\v"},
      {"8", 51, "Loop.1", "[Loop.1]more"},
      {"9", 38, "Script.1", "[WindowsFolder]"},
      {"10", 51, "Empty.1", ""},
      {"11", 51, "VENDOR", "Larkfield\\"},
      {"12", 51, "Filled.1", "[SystemFolder][VENDOR]x[VENDOR]"},
      {"13", 51, "Folders.1", "[SystemFolder][Drivers.1]x"},
      {"14", 51, "Open.1", "[SystemFolder][VENDOR"},
      {"15", 51, "DISK", "D:\\"},
      {"16", 51, "Disk.1", "[SystemFolder][DISK]"},
      {"17", 51, "Full.1", "C:\\[VENDOR]y\\"},
  };
  const std::pair<const char*, const char*> cases[] = {
      {"SystemFolder.1", "[SystemFolder] predefined"},
      {"System64Folder", "[System64Folder] predefined"},
      {"DesktopFolder.1.2", "[DesktopFolder] predefined"},
      {"systemfolder.1", "[TARGETDIR]sys redirected:systemfolder.1"},
      {"StartMenuFolder.9", "[StartMenuFolder] predefined"},
      {"Drivers.1", "[SystemFolder]drivers predefined"},
      {"Same.1", "[SystemFolder]drivers\\etc predefined"},
      {"Config.1", "[SystemFolder]drivers\\etc\\.config predefined"},
      {"TARGETDIR", "[TARGETDIR]"},
      {"Own.1", "[TARGETDIR] redirected:Own.1"},
      {"Bin.1", "[TARGETDIR]bin redirected:Own.1"},
      {"InRoot.1", "[Root.1]in"},
      {"Lost.1", "[Gone]lost missing"},
      {"", " missing"},
      {"A.1", "b\\a circle"},
      {"InSxs.1", "[WindowsFolder]winsxs\\x\\in predefined action"},
      {"WindowsFolder.1", "[WindowsFolder] predefined action"},
      {"TempFolder", "[TempFolder]own predefined action"},
      {"Fixed.1", "C:\\Fixed action"},
      {"Through.1", "[SystemFolder]drivers\\mine\\[Other] predefined action run time"},
      {"Variable.1", "[%ProgramData]v action"},
      {"Loop.1", "[TARGETDIR]loop\\more action redirected:Loop.1"},
      {"Script.1", "[TARGETDIR]script redirected:Script.1"},
      {"Empty.1", "[TARGETDIR]empty redirected:Empty.1"},
      {"Filled.1", "[SystemFolder]Larkfield\\xLarkfield predefined action"},
      {"Below.1", "[SystemFolder]Larkfield\\xLarkfield\\below predefined action"},
      {"Folders.1", "[SystemFolder][Drivers.1]x predefined action run time"},
      {"Open.1", "[SystemFolder][VENDOR predefined action"},
      {"Disk.1", "[SystemFolder][DISK] predefined action run time"},
      {"Full.1", "C:\\Larkfield\\y action"},
  };
  const merge::TargetFolders folders(module);
  for (const auto& [key, expected] : cases) {
    EXPECT_EQ(expected, Describe(folders.Resolve(key))) << key;
  }
}

TEST(TargetFoldersTest, AWalkOfAnyLengthEndsAndAFullPathStaysWhole) {
  const size_t count = 2000;
  const std::string name(200, 'n');
  std::vector<std::string> keys;
  for (size_t i = 0; i <= count; ++i) {
    keys.push_back("D" + std::to_string(i));
  }
  for (const std::string_view text : {std::string_view("n"), std::string_view(name)}) {
    merge::Module module;
    for (size_t i = 0; i < count; ++i) {
      module.directories.push_back({keys[i], keys[i + 1], text});
    }
    const merge::TargetFolder folder = merge::TargetFolders(module).Resolve("D0");
    EXPECT_EQ(merge::FolderEnd::LimitReached, folder.end);
    EXPECT_EQ("", folder.root + folder.path);
  }
  for (const std::string_view path : {"C:\\", "\\\\server\\share\\dir", "C:\\x"}) {
    merge::Module fixed;
    fixed.directories.push_back({"D", "TARGETDIR", "n"});
    fixed.directories.push_back({"E", "D", "sub"});
    fixed.customActions.push_back({"A", 51, "D", path});
    const merge::TargetFolders folders(fixed);
    EXPECT_EQ(path, merge::FormatTargetFolder(folders.Resolve("D")));
    EXPECT_EQ(std::string(path) + (path.back() == '\\' ? "sub" : "\\sub"),
              merge::FormatTargetFolder(folders.Resolve("E")));
  }
  const std::string target(60000, 't');
  merge::Module module;
  module.directories.push_back({"D", "SystemFolder", "n"});
  module.customActions.push_back({"A", 51, "D", target});
  EXPECT_EQ("", merge::FormatTargetFolder(merge::TargetFolders(module).Resolve("D")));
}

TEST(TargetFoldersTest, ARootIsSpelledByTheProject) {
  const auto spell = [](std::string_view root) {
    return std::string(root == "SystemFolder" ? "<WINSYSDIR>" : "");
  };
  EXPECT_EQ("<WINSYSDIR>drivers", merge::FormatTargetFolder({"SystemFolder", "drivers"}, spell));
  EXPECT_EQ("[FontsFolder]", merge::FormatTargetFolder({"FontsFolder", ""}, spell));
  EXPECT_EQ("C:\\x", merge::FormatTargetFolder({"", "C:\\x"}, spell));
}

TEST(TargetFoldersTest, TablesSayWhichActionsRunAndWhatIsConfigurable) {
  DatabaseImage image;
  image.tables = {
      {"ModuleSignature", ColumnsOf("ModuleSignature"), {{"Pens.1", 0, "1"}}},
      {"Directory",
       ColumnsOf("Directory"),
       {{"TARGETDIR", nullptr, "SourceDir"},
        {"A.1", "TARGETDIR", "a"},
        {"B.1", "TARGETDIR", "b"},
        {"C.1", "TARGETDIR", "c"},
        {"InC.1", "C.1", "in"}}},
      {"CustomAction",
       ColumnsOf("CustomAction"),
       {{"Unused", 51, "A.1", "[FontsFolder]"},
        {"Sometimes", 51, "B.1", "[WindowsFolder]"},
        {"Always", 51, "B.1", "[SystemFolder]"}}},
      {"ModuleInstallExecuteSequence",
       {{"Action", kText | kKey}, {"Condition", kText | kNullable}},
       {{"Sometimes", "VersionNT"}, {"Always", nullptr}}},
      {"Property",
       {{"Property", kText | kKey}, {"Value", kText}},
       {{"A.1", "D:\\Data\\"}, {"TARGETDIR", ""}}},
      {"ModuleSubstitution",
       ColumnsOf("ModuleSubstitution"),
       {{"Directory", "C.1", "DefaultDir", "[=Name]"}, {"Directory", "A.1", "DefaultDir", "[=x"}}},
  };
  const merge::Module module = Read(image);
  const merge::TargetFolders folders(module);
  EXPECT_EQ("D:\\Data", Describe(folders.Resolve("A.1")));
  EXPECT_EQ("[SystemFolder] predefined action", Describe(folders.Resolve("B.1")));
  EXPECT_EQ("[TARGETDIR]c\\in redirected:C.1 item:Name", Describe(folders.Resolve("InC.1")));
}

TEST(TargetFoldersTest, OfSeveralActionsTheLastThatRunsInTimeCounts) {
  DatabaseImage image;
  image.tables = {
      {"ModuleSignature", ColumnsOf("ModuleSignature"), {{"Pens.1", 0, "1"}}},
      {"CustomAction",
       ColumnsOf("CustomAction"),
       {{"First", 51, "LAST", "[SystemFolder]first"},
        {"Second", 51, "LAST", "[SystemFolder]second"},
        {"Here", 51, "RELATIVE", "[SystemFolder]here"},
        {"Before", 51, "RELATIVE", "[SystemFolder]before"},
        {"After", 51, "RELATIVE", "[SystemFolder]after"},
        {"AtEnd", 51, "NEVER", "[SystemFolder]end"},
        {"Unplaced", 51, "NEVER", "[SystemFolder]unplaced"},
        {"Late", 51, "COSTED", "[SystemFolder]late"},
        {"Costed", 51, "COSTED", "[SystemFolder]costed"},
        {"Directory", 35, "MOVED", "[SystemFolder]moved"},
        {"Use", 51, "USER", "[SystemFolder][PART]x"},
        {"UseNow", 51, "LATER", "[SystemFolder][PART]x"},
        {"Set", 51, "PART", "part"},
        {"UseEarly", 51, "EARLY", "[ROOT]x"},
        {"SetRoot", 51, "ROOT", "[SystemFolder]"},
        {"Own", 51, "OWN", "[SystemFolder]own"},
        {"OwnMore", 51, "OWN", "[OWN]more"},
        {"Shown", 51, "SHOWN", "[SystemFolder]shown"},
        {"Run", 51, "SHOWN", "[SystemFolder]run"}}},
      {"ModuleInstallExecuteSequence",
       ColumnsOf("ModuleInstallExecuteSequence"),
       {{"CostInitialize", 800, nullptr, nullptr, nullptr},
        {"First", 300, nullptr, nullptr, nullptr},
        {"Second", 200, nullptr, nullptr, nullptr},
        {"Here", nullptr, "CostInitialize", 0, nullptr},
        {"Before", nullptr, "Here", 0, nullptr},
        {"After", nullptr, "Here", 1, nullptr},
        {"AtEnd", -1, nullptr, nullptr, nullptr},
        {"Unplaced", nullptr, nullptr, nullptr, nullptr},
        {"Late", nullptr, "CostFinalize", 1, nullptr},
        {"Costed", nullptr, "CostFinalize", 0, nullptr},
        {"Directory", 1100, nullptr, nullptr, nullptr},
        {"Use", 100, nullptr, nullptr, nullptr},
        {"Set", 150, nullptr, nullptr, nullptr},
        {"UseNow", 200, nullptr, nullptr, nullptr},
        {"UseEarly", 100, nullptr, nullptr, nullptr},
        {"SetRoot", 200, nullptr, nullptr, nullptr},
        {"Own", 10, nullptr, nullptr, nullptr},
        {"OwnMore", 20, nullptr, nullptr, nullptr},
        {"Run", 1, nullptr, nullptr, nullptr}}},
      {"ModuleInstallUISequence",
       ColumnsOf("ModuleInstallUISequence"),
       {{"Shown", 700, nullptr, nullptr, nullptr}}},
  };
  const std::pair<const char*, const char*> cases[] = {
      {"LAST", "[SystemFolder]first predefined action"},
      {"RELATIVE", "[SystemFolder]after predefined action"},
      {"NEVER", "[NEVER] missing"},
      {"COSTED", "[SystemFolder]costed predefined action"},
      {"MOVED", "[SystemFolder]moved predefined action"},
      {"USER", "[SystemFolder][PART]x predefined action run time"},
      {"LATER", "[SystemFolder]partx predefined action"},
      {"EARLY", "[ROOT]x action"},
      {"OWN", "[SystemFolder]own\\more predefined action"},
      {"SHOWN", "[SystemFolder]run predefined action"},
  };
  const merge::Module module = Read(image);
  const merge::TargetFolders folders(module);
  for (const auto& [key, expected] : cases) {
    EXPECT_EQ(expected, Describe(folders.Resolve(key))) << key;
  }
}

/// Worked out by hand from the tables of these files.
TEST(TargetFoldersTest, FilesOfModulesOfOtherToolsGoWhereTheirTablesSay) {
  const std::filesystem::path modules =
      std::filesystem::path(QM_SOURCE_DIR).parent_path() / "shared" / "modules";
  if (!std::filesystem::exists(modules)) {
    std::cout << "left out: there are no modules of other tools beside the checkout\n";
    return;
  }
  const struct {
    const char* module;
    const char* file;  ///< what its key begins with
    const char* path;
  } cases[] = {
      {"MergeModule1", "File1.", "[ProgramFilesFolder]WiX Toolset Test Directory\\MergeModule.wxs"},
      {"MergeModule1", "File2.", "[TARGETDIR]MergeModule.wxs redirected"},
      {"MyMergeModule", "File.File2.txt.", "[ProgramFilesFolder]My Company\\File2.txt"},
      {"Module401", "File2.", "[TARGETDIR]file2.txt redirected"},
      {"vc90/Microsoft_VC90_CRT_x86", "nosxs_msvcr90.dll.", "[SystemFolder]msvcr90.dll"},
      {"vc90/Microsoft_VC90_ATL_x86", "ul_atl90.dll.",
       "[WindowsFolder]winsxs\\x86_microsoft.vc90.atl_1fc8b3b9a1e18e3b_9.0.30729.6161_none_"
       "51cd0a7abbe4e19b\\atl90.dll action"},
      {"vc90/Microsoft_VC90_ATL_x86", "atl90.dll.",
       "[WindowsFolder]winsxs\\x86_Microsoft.VC90.ATL_1fc8b3b9a1e18e3b_9.0.30729.6161_x-ww_"
       "92453bb7\\atl90.dll action"},
      {"vc90/Microsoft_VC90_ATL_x86", "catalog.",
       "[WindowsFolder]winsxs\\Manifests\\x86_Microsoft.VC90.ATL_1fc8b3b9a1e18e3b_9.0.30729.6161_x-"
       "ww_92453bb7.cat action"},
      {"vc90/policy_9_0_Microsoft_VC90_CRT_x86", "policy.",
       "[WindowsFolder]winsxs\\Policies\\x86_policy.9.0.Microsoft.VC90.CRT_1fc8b3b9a1e18e3b_x-ww_"
       "b7353f75\\9.0.30729.6161.policy action"},
      {"vc90/policy_9_0_Microsoft_VC90_CRT_x86", "ul_policy.",
       "[WindowsFolder]winsxs\\x86_policy.9.0.microsoft.vc90.crt_1fc8b3b9a1e18e3b_9.0.30729.6161_"
       "none_f480bfaef65491a5\\9.0.30729.6161.policy action"},
  };
  for (const auto& [name, file, path] : cases) {
    SCOPED_TRACE(std::string(name) + ' ' + file);
    std::ifstream stream(modules / (std::string(name) + ".msm"), std::ios::binary);
    MemorySource source(image::Bytes(std::istreambuf_iterator<char>(stream), {}));
    const merge::Module module = merge::ReadModule(source, merge::DecodeCommonCodePage);
    EXPECT_EQ("", module.failure);
    EXPECT_LE(200, module.minimumInstaller.value_or(0));
    const merge::TargetFolders folders(module);
    std::string found;
    for (const merge::DeliveredFile& one : module.files) {
      if (one.key.substr(0, std::string_view(file).size()) == file) {
        const merge::TargetFolder folder = folders.Resolve(one.directory);
        EXPECT_EQ(merge::FolderEnd::Root, folder.end);
        const std::string target = merge::FormatTargetFolder(folder);
        found = target + (target.back() == ']' ? "" : "\\") + std::string(one.name) +
                (folder.isSetByAction ? " action" : "") +
                (folder.IsRedirected() ? " redirected" : "");
        break;
      }
    }
    EXPECT_EQ(path, found);
  }
}

}  // namespace

}  // namespace qm::tests

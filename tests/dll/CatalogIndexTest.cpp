#include "common/Bstr.h"
#include "tests/support/Answers.h"
#include "tests/support/CatalogFixture.h"

namespace qm::tests {

namespace {

using testing::PrintToString;

/// The index tables are read by the first catalog of the process, before the test begins.
class CatalogIndexTest : public CatalogFixture {
 protected:
  void Settle() override {
    const std::wstring folder = m_folder / L"index";
    WriteIndexes("");
    ::SetEnvironmentVariableW(L"QM_MODULE_INDEX_DIR", folder.c_str());
    ::SetEnvironmentVariableW(L"QM_FILE_INDEX_DIR", (folder + L"\\").c_str());
    CatalogFixture::Settle();
  }

  /// Writes the index files, with `mark` behind every module ID and display name.
  void WriteIndexes(const std::string& mark) const {
    const auto write = [&](const wchar_t* name, std::string text) {
      for (size_t at = 0; (at = text.find('*', at)) != std::string::npos;) {
        text.replace(at, 1, mark);
      }
      WriteText(name, "\xEF\xBB\xBF" + text);
    };
    write(L"index\\modules.ini",
          "[other]\r\nAlpha:1033=No\r\n[modules]\r\nAlpha:1033=Name of \xC3\x84lpha*\r\n"
          "Empty:0=\r\nbeta:0=No\r\nBeta:0=First\r\nBeta:0=Second*\r\n");
    write(L"index\\FilesToModules.ini",
          "[filestomodules]\r\na.dll=0:Mod.A*\r\nb.dll=0:Mod.B*:1033\r\nc.dll=1:Mod.C\r\n"
          "d.dll=Mod.D\r\nUpper.dll=0:No\r\ne.dll=0:No\r\ne.dll=0:Mod.E*\r\nf.dll=\r\n"
          "g.dll=00:No\r\nbare.dll=0:\r\nboth.dll=1:No\r\n\xC3\xA4.dll=0:Mod.\xC3\x84*\r\n=0:No\r\n"
          "[x]\r\nx.dll=0:No\r\n");
    write(L"index\\PlatformFilesToModules.ini",
          "[PlatformFilesToModules]\r\nx.dll=0:No\r\n[PlatformFileToModule]\r\np.dll=Mod.P*\r\n"
          "q.dll=Mod.Q*:1031\r\nr.dll=0:Mod.R*\r\ns.dll=1:No\r\nt.dll=12:No:0\r\nu.dll=\r\n"
          "a.dll=No\r\nboth.dll=Mod.No\r\n");
  }
};

TEST_F(CatalogIndexTest, AnswersFromTheIndexFilesThatTheProcessReadFirst) {
  const std::pair<const wchar_t*, std::vector<const wchar_t*>> modules[] = {
      {L"Mod.A:0", {L"a.dll", L"A.Dll", L"C:\\Some folder\\A.DLL", L"c:/x/a.dll", L"x:a.dll"}},
      {L"Mod.\u00C4:0", {L"\u00C4.DLL"}},
      {L"Mod.B:1033", {L"b.dll"}},
      {L"Mod.E:0", {L"e.dll"}},
      {L":0", {L"bare.dll"}},
      {L"Mod.P:0", {L"P.DLL"}},
      {L"Mod.Q:1031", {L"C:\\q.dll"}},
      {L"Mod.R:0", {L"r.dll"}},
      {L"",
       {L"c.dll", L"d.dll", L"upper.dll", L"Upper.dll", L"f.dll", L"g.dll", L"x.dll", L"both.dll",
        L"s.dll", L"t.dll", L"u.dll", L" a.dll", L"C:\\a.dll\\", L"", nullptr}}};
  const std::pair<const wchar_t*, const wchar_t*> names[] = {
      {L"Alpha:1033", L"Name of \u00C4lpha"},
      {L"alpha:1033", L"alpha:1033"},
      {L"Alpha", L"Alpha"},
      {L"Beta:0", L"Second"},
      {L"Empty:0", L""},
      {L"", L""},
      {nullptr, L""},
  };
  SetSearchPath(L"*a");
  WriteModule(L"a\\1.msm", "Alpha");
  WriteModule(L"a\\2.msm", "Gamma");
  for (const char* mark : {"", " changed"}) {
    SCOPED_TRACE(mark);
    WriteIndexes(mark);
    const auto catalog = NewCatalog();
    for (const auto& [module, files] : modules) {
      for (const wchar_t* file : files) {
        SCOPED_TRACE(PrintToString(std::wstring(file ? file : L"(null)")));
        common::UniqueBstr key;
        EXPECT_EQ(S_OK, catalog->GetModuleForFile(Variant(file).bstrVal, key.Put()));
        EXPECT_TRUE(key);
        EXPECT_EQ(module, common::ViewOf(key.Get()));
      }
    }
    for (const auto& [key, expected] : names) {
      SCOPED_TRACE(PrintToString(std::wstring(key ? key : L"(null)")));
      common::UniqueBstr name;
      EXPECT_EQ(S_OK, catalog->GetModuleDisplayName(Variant(key).bstrVal, name.Put()));
      EXPECT_EQ(expected, common::ViewOf(name.Get()));
    }
    const common::ComPtr<IMergeModules> list = ModulesOf(catalog.Get());
    EXPECT_EQ(L"Name of \u00C4lpha", ReadModule(ModuleAt(list.Get(), 1).Get(), L"DisplayName"));
    EXPECT_EQ(L"Title of Gamma", ReadModule(ModuleAt(list.Get(), 2).Get(), L"DisplayName"));
  }
}

}  // namespace

}  // namespace qm::tests

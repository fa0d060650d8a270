#include <CLI/CLI.hpp>
#include <algorithm>
#include <map>

#include "client/catalog/CatalogSettings.h"
#include "client/catalog/FileNames.h"
#include "client/catalog/InstallerObject.h"
#include "client/catalog/ModuleCollection.h"
#include "client/catalog/Properties.h"
#include "client/commands/Commands.h"
#include "common/Path.h"
#include "common/UniqueHandle.h"
#include "idl/mergeset.h"
#include "idl/qmmmupdater2.h"
#include "msidb/InstallerOrdinals.h"
#include "text/Utf.h"

namespace mmcat {

namespace {

using qm::common::WideString;

constexpr const char* kArchitecture = sizeof(void*) == 8 ? "64-bit" : "32-bit";

struct Check {
  std::string subject;
  std::string failure;  ///< empty if the check passed
};

std::string Describe(const ServerFailure& failure) {
  return FormatHResult(failure.HResult()) + ' ' + failure.what();
}

/// The checks and their outcomes. A check is a function that returns its failure, or an empty text,
/// and can throw ServerFailure.
class Checks {
 public:
  template <class Function>
  void Add(const std::string& subject, Function check) {
    try {
      m_checks.push_back({subject, check()});
    } catch (const ServerFailure& failure) {
      m_checks.push_back({subject, Describe(failure)});
    }
  }
  const std::vector<Check>& All() const { return m_checks; }
  size_t CountFailures() const {
    size_t count = 0;
    for (const Check& check : m_checks) {
      count += !check.failure.empty();
    }
    return count;
  }

  /// What to do about checks that failed; empty if that is not known.
  const std::string& Remedy() const { return m_remedy; }
  void SetRemedy(std::string remedy) { m_remedy = std::move(remedy); }

 private:
  std::vector<Check> m_checks;
  std::string m_remedy;
};

/// The full path of a DLL of this process, or of the program if `dll` is null. Empty if the DLL is
/// not loaded.
WideString FindLoadedFile(const wchar_t* dll) {
  const HMODULE module = ::GetModuleHandleW(dll);
  wchar_t path[MAX_PATH * 4];
  const DWORD length =
      dll && !module ? 0 : ::GetModuleFileNameW(module, path, static_cast<DWORD>(std::size(path)));
  return {path, length};
}

WideString ProgramFolder() { return qm::common::ParentFolder(FindLoadedFile(nullptr)); }

struct LibraryTraits {
  using Handle = HMODULE;
  static constexpr Handle None() noexcept { return nullptr; }
  static void Close(Handle library) noexcept { ::FreeLibrary(library); }
};

std::string CheckOrdinals() {
  const qm::common::UniqueHandle<LibraryTraits> installer(::LoadLibraryW(L"msi.dll"));
  if (!installer) {
    return "the DLL cannot be loaded";
  }
  std::string wrong;
  for (const qm::msidb::InstallerOrdinal& function : qm::msidb::kInstallerOrdinals) {
    const auto find = [&](const char* nameOrOrdinal) {
      return ::GetProcAddress(installer.Get(), nameOrOrdinal);
    };
    if (!find(function.name) || find(function.name) != find(MAKEINTRESOURCEA(function.ordinal))) {
      wrong += (wrong.empty() ? "" : ", ") + std::to_string(function.ordinal) + " is not " +
               function.name;
    }
  }
  return wrong;
}

std::string CheckTypeLibrary(const wchar_t* file) {
  qm::common::ComPtr<ITypeLib> library;
  ThrowIfFailed(::LoadTypeLibEx(qm::common::JoinPath(ProgramFolder(), file).c_str(), REGKIND_NONE,
                                library.Put()));
  return library->GetTypeInfoCount() > 0 ? "" : "the library is empty";
}

/// Creates an object of a class and checks that its DLL is the one in this program's folder. The
/// manifest demands that, whatever is registered.
std::string CheckClass(const wchar_t* progId, const wchar_t* dll) {
  CLSID clsid{};
  ThrowIfFailed(::CLSIDFromProgID(progId, &clsid));
  const auto object = CreateObject<IDispatch>(clsid, "CoCreateInstance");
  const WideString loaded = FindLoadedFile(dll);
  const bool isOurs =
      qm::common::CompareFileNames(qm::common::ParentFolder(loaded), ProgramFolder()) == 0;
  return isOurs ? "" : "was created by " + SpellPath(qm::text::ToUtf8(loaded));
}

ModuleIdentity ReadByServer(const WideString& path) {
  const auto module = CreateObject<IMergeModule2>(CLSID_MergeModule2, "QmMMUpdater2.dll");
  ThrowIfFailed(module->Open(MakeArgument(path).Get()));
  IMergeModule& oldest = *module;  // which declares the properties
  const auto files = ReadObject(oldest, &IMergeModule::get_Files);
  return {ReadText(oldest, &IMergeModule::get_Key), ReadText(oldest, &IMergeModule::get_Version),
          ReadText(oldest, &IMergeModule::get_PackageCode),
          ReadNumber(*files, &IMMFiles::get_Count)};
}

std::string Describe(const ModuleIdentity& module) {
  return module.key + ' ' + module.version + ' ' + module.packageCode + ", " +
         std::to_string(module.files) + " files";
}

/// The contents of some samples, which reveal a fault that both readers share.
const std::map<std::wstring, const char*>& KnownSamples() {
  static const std::map<std::wstring, const char*> samples{
      {L"BareMark.msm",
       "BareMark.A1439287_AD87_4073_9836_80AB00BFB101:1033 1.0 "
       "{70EFA5F8-4EC3-4823-86E0-7194B127AD10}, 0 files"},
      {L"CharmapCoreGerman.msm",
       "CharmapCore.3128F3C8_E9E9_4EE8_8D6A_7BACB932B1AE:1031 2.4.1.0 "
       "{7CB7F588-AEA9-4274-8357-171B8F6B6F63}, 3 files"},
      {L"PlotterSuite.msm",
       "PlotterSuite.B75FCBCF_0E12_41CF_8BE3_99FB218A91ED:1033 6.2.0.0 "
       "{C4B5F6BA-D386-4152-98AE-BB3351324D24}, 5 files"},
      {L"WorldStrings.msm",
       "WorldStrings.A5F04E7D_A727_48C9_BE09_4CAC0B482DC8:-1 1.0.7.0 "
       "{EE919BB3-E1F0-49BE-932A-72951663810A}, 1 files"},
  };
  return samples;
}

std::string CheckSample(const WideString& folder, const std::wstring& name) {
  const WideString path = qm::common::JoinPath(folder, name);
  const std::string byServer = Describe(ReadByServer(path));
  const std::string byInstaller = Describe(InstallerObject().ReadModule(path));
  if (byServer != byInstaller) {
    return "the server reads " + byServer + "; the installer reads " + byInstaller;
  }
  const auto known = KnownSamples().find(name);
  return known == KnownSamples().end() || known->second == byServer
             ? ""
             : "contains " + byServer + " instead of " + known->second;
}

/// Checks a target path in a sample that is loaded into a set. Spelling it involves all components.
std::string CheckTargetPath(const WideString& path) {
  const auto module = CreateObject<IMergeModule2>(CLSID_MergeModule2, "QmMMUpdater2.dll");
  ThrowIfFailed(module->Open(MakeArgument(path).Get()));
  const auto set = CreateObject<IMergeSet>(CLSID_MergeSet, "QmMergeSet.dll");
  ThrowIfFailed(set->Load(MakeModuleCollection({module.Get()}).Get()));
  qm::common::ComPtr<ISetFiles> files;
  ThrowIfFailed(set->FindFiles(nullptr, files.Put()));
  std::string folder;
  ForEachItem<ISetFile>(
      *files, [&](ISetFile& file) { folder = ReadText(file, &ISetFile::get_TargetPath); });
  // The second is the spelling in script-based projects.
  return folder == "[SystemFolder]" || folder == "<WINSYSDIR>"
             ? ""
             : '"' + folder + "\" instead of \"[SystemFolder]\"";
}

/// The folder of the sample modules, in the package or in a build. Empty if there is none.
WideString FindSamples() {
  for (const wchar_t* place : {L"..\\..\\samples\\modules", L"..\\samples\\modules"}) {
    WideString folder = qm::common::ResolveFullPath(qm::common::JoinPath(ProgramFolder(), place));
    if (qm::common::PathExists(folder)) {
      return folder;
    }
  }
  return {};
}

void CheckSamples(const WideString& folder, Checks& checks) {
  const std::vector<std::wstring> names =
      folder.empty() ? std::vector<std::wstring>()
                     : FindFileNames(qm::common::JoinPath(folder, L"*.msm"));
  if (names.empty()) {
    checks.Add("samples", [&] {
      return (folder.empty() ? "the sample modules are not beside this program"
                             : "there are no modules in " + SpellPath(qm::text::ToUtf8(folder))) +
             "; --samples DIR names their folder";
    });
    return;
  }
  for (const auto& [name, contents] : KnownSamples()) {
    if (std::find(names.begin(), names.end(), name) == names.end()) {
      checks.Add("sample " + qm::text::ToUtf8(name), [&, &folder = folder] {
        return "not found in \"" + SpellPath(qm::text::ToUtf8(folder)) + '"';
      });
    }
  }
  checks.Add("target path in TinyZip.msm",
             [&] { return CheckTargetPath(qm::common::JoinPath(folder, L"TinyZip.msm")); });
  for (const std::wstring& name : names) {
    checks.Add("sample " + qm::text::ToUtf8(name), [&] { return CheckSample(folder, name); });
  }
}

Checks RunChecks(const WideString& samples) {
  Checks checks;
  checks.Add("ordinals of msi.dll", CheckOrdinals);
  for (const wchar_t* file : {L"qmmmupdater.tlb", L"QmMMUpdater2.dll", L"Gleaner.dll",
                              L"QmAppServices.dll", L"Corvane8.dll", L"QmMergeSet.dll"}) {
    checks.Add("type library of " + qm::text::ToUtf8(file), [&] { return CheckTypeLibrary(file); });
  }
  const struct {
    const wchar_t* progId;
    const wchar_t* dll;
  } classes[] = {
      {L"QmMMUpdater.MMCatalogManager", L"QmMMUpdater2.dll"},
      {L"QmMMUpdater.MMCatalog", L"QmMMUpdater2.dll"},
      {L"QmMMUpdater.MMCatalogPro", L"QmMMUpdater2.dll"},
      {L"QmMMUpdater.MergeModule2", L"QmMMUpdater2.dll"},
      {L"Gleaner.IniReader", L"Gleaner.dll"},
      {L"QmAppServices.ApplicationServices", L"QmAppServices.dll"},
      {L"Corvane8.RepositoryMgr", L"Corvane8.dll"},
      {L"QmMMUpdater.MergeSet", L"QmMergeSet.dll"},
  };
  const size_t failuresBefore = checks.CountFailures();
  for (const auto& [progId, dll] : classes) {
    checks.Add("class " + qm::text::ToUtf8(progId),
               [progId = progId, dll = dll] { return CheckClass(progId, dll); });
  }
  if (checks.CountFailures() > failuresBefore) {
    checks.SetRemedy(ServerUnavailable::DescribeRemedy());
  }
  CheckSamples(samples, checks);
  return checks;
}

/// The version of the system itself, which GetVersionEx hides from programs without a manifest
/// entry for it.
std::string DescribeSystem() {
  const HMODULE system = ::GetModuleHandleW(L"ntdll.dll");
  RTL_OSVERSIONINFOW version{};
  version.dwOSVersionInfoSize = sizeof version;
  using GetVersionFunction = LONG WINAPI(RTL_OSVERSIONINFOW*);
  const auto getVersion = reinterpret_cast<GetVersionFunction*>(
      reinterpret_cast<void*>(::GetProcAddress(system, "RtlGetVersion")));
  if (getVersion) {
    getVersion(&version);
  }
  const bool isWine = ::GetProcAddress(system, "wine_get_version") != nullptr;
  return "Windows " + std::to_string(version.dwMajorVersion) + '.' +
         std::to_string(version.dwMinorVersion) + '.' + std::to_string(version.dwBuildNumber) +
         (isWine ? " (Wine)" : "");
}

struct Options {
  std::string samples;
};

void AddArguments(CLI::App& parser, Options& options) {
  parser
      .add_option("--samples", options.samples,
                  "Folder of the sample modules, by default that of this program's package")
      ->type_name("DIR")
      ->check(CLI::Validator(ValidateFolder, ""));
}

ExitCode Run(const Options& options, const OutputOptions& output) {
  const WideString samples = options.samples.empty()
                                 ? FindSamples()
                                 : qm::common::ResolveFullPath(ToSystemPath(options.samples));
  const std::string system = DescribeSystem();
  const Checks checks = RunChecks(samples);

  Report report("selftest", output);
  Json list = Json::array();
  std::string text =
      std::string("mmcat " MMCAT_VERSION ", ") + kArchitecture + ", on " + system + "\n";
  for (const Check& check : checks.All()) {
    const bool passed = check.failure.empty();
    list.push_back({{"subject", check.subject}, {"passed", passed}, {"failure", check.failure}});
    text += passed ? "passed  " + check.subject + '\n'
                   : "FAILED  " + check.subject + ": " + check.failure + '\n';
  }
  const size_t failures = checks.CountFailures();
  text += std::to_string(checks.All().size() - failures) + " checks passed, " +
          std::to_string(failures) + " failed\n";
  text += checks.Remedy().empty() ? "" : checks.Remedy() + '\n';
  report.Document().update({{"version", MMCAT_VERSION},
                            {"architecture", kArchitecture},
                            {"system", system},
                            {"checks", std::move(list)}});
  report.Print(text);
  return report.Finish(failures > 0 ? kFindings : kSuccess);
}

}  // namespace

extern const Command kSelftestCommand = {
    "selftest",
    "Check whether the server works on this system",
    "  mmcat selftest > report.txt            a report to send back\n",
    PrepareCommand<Options, AddArguments, Run>,
    {},
    SettingsUse::None,
};

}  // namespace mmcat

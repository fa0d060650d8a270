// hostile BASES FOLDER SEED FIRST END: makes the damaged modules FIRST to END-1 of SEED from the
// sound modules that the file BASES names, a path a line, and asks the built server through COM for
// everything about each: opened alone, and in a search folder with others. FOLDER is for what is
// written:
//
// - progress.txt: the module that is being asked, and the one to go on with if the process ends
// - outcome.txt: how many modules opened and failed, and how long they took
// - modules/: the damaged modules that are being asked; one that is asked alone stays
// - measure: exists while the process waits to be measured, until somebody removes it
//
// Prints finds. Exits with 0 if there are none, with 1 otherwise.

#include <windows.h>
// Before the headers that need its types.
#include <msi.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <stdexcept>
#include <string>

#include "bench/HeapBytes.h"
#include "common/Bstr.h"
#include "common/ComPtr.h"
#include "idl/qmmmupdater.h"
#include "idl/qmmmupdater2.h"
#include "msidb/TargetDirectories.h"
#include "tests/hostile/Damage.h"
#include "tests/support/Answers.h"
#include "tests/support/ComDll.h"
#include "tests/support/TestFolder.h"
#include "traits/TargetPath.h"

namespace {

namespace fs = std::filesystem;

constexpr double kSlow = 1000;             // milliseconds
constexpr DWORD kHang = 30000;             // milliseconds
constexpr unsigned kFolderSize = 40;       // modules
constexpr size_t kHeapAllowance = 300000;  // bytes; the system and its installer keep some

[[noreturn]] void Fail(const std::string& what) {
  std::fprintf(stderr, "hostile: %s\n", what.c_str());
  std::exit(2);
}

std::string Narrow(const std::wstring& text) {
  std::string narrow;
  for (const wchar_t character : text) {
    narrow += character >= L' ' && character <= L'~' ? static_cast<char>(character) : '?';
  }
  return narrow;
}

qm::tests::Bytes ReadFile(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return qm::tests::Bytes(std::istreambuf_iterator<char>(file), {});
}

void WriteFile(const fs::path& path, const qm::tests::Bytes& bytes) {
  std::ofstream(path, std::ios::binary)
      .write(reinterpret_cast<const char*>(bytes.data()),
             static_cast<std::streamsize>(bytes.size()));
}

std::vector<qm::tests::Base> ReadBases(const fs::path& list) {
  std::vector<qm::tests::Base> bases;
  std::ifstream paths(list);
  for (std::string path; std::getline(paths, path);) {
    const fs::path file = fs::u8path(path);
    qm::tests::Bytes bytes = ReadFile(file);
    if (bytes.size() < 4096) {
      Fail(path + " cannot be read");
    }
    try {
      qm::tests::ModuleMap map(bytes);
      bases.push_back({file.filename().u8string(), std::move(bytes), std::move(map)});
    } catch (const std::out_of_range&) {
      std::fprintf(stderr, "left out, because it is damaged already: %s\n", path.c_str());
    }
  }
  if (bases.empty()) {
    Fail("there are no modules to damage");
  }
  return bases;
}

// ---- For the caller, if the process ends

std::atomic<DWORD> g_begun{0};  ///< tick count of the module that is being asked; 0 for none
HANDLE g_progress = INVALID_HANDLE_VALUE;
std::string g_now;  ///< what is in progress.txt

/// `next` is the module to go on with if the process ends.
void Begin(unsigned number, unsigned next, const char* work, const std::string& how) {
  g_begun = std::max<DWORD>(1, ::GetTickCount());
  g_now = std::to_string(number) + " " + std::to_string(next) + " " + work + " (" + how + ")\n";
  DWORD written = 0;
  ::SetFilePointer(g_progress, 0, nullptr, FILE_BEGIN);
  ::WriteFile(g_progress, g_now.data(), static_cast<DWORD>(g_now.size()), &written, nullptr);
  ::SetEndOfFile(g_progress);
}

DWORD WINAPI EndHangs(void*) {
  for (;;) {
    ::Sleep(1000);
    const DWORD begun = g_begun;
    if (begun != 0 && ::GetTickCount() - begun > kHang) {
      std::fprintf(stderr, "hangs\n");
      ::TerminateProcess(::GetCurrentProcess(), 4);
    }
  }
}

LONG WINAPI EndCrash(EXCEPTION_POINTERS* exception) {
  std::fprintf(stderr, "exception 0x%08lX at %p\n", exception->ExceptionRecord->ExceptionCode,
               exception->ExceptionRecord->ExceptionAddress);
  ::TerminateProcess(::GetCurrentProcess(), 3);
  return EXCEPTION_EXECUTE_HANDLER;
}

/// "0x80070570 MsiOpenDatabase" for a failure: its code and the call at the end of its description.
std::string KindOf(const std::wstring& failure) {
  constexpr wchar_t kLetters[] = L"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
  const size_t begin = std::min(failure.rfind(L"Msi"), failure.size());
  const size_t end = std::min(failure.find_first_not_of(kLetters, begin), failure.size());
  return Narrow(failure.substr(0, 11) + failure.substr(begin, end - begin));
}

/// The keys of all directories of files.
qm::msidb::TargetDirectoryMap DirectoriesOf(IMergeModule& module) {
  qm::msidb::TargetDirectoryMap directories;
  qm::common::ComPtr<IMMFiles> files;
  long count = 0;
  if (SUCCEEDED(module.get_Files(files.Put()))) {
    files->get_Count(&count);
  }
  for (long number = 1; number <= count; ++number) {
    qm::common::ComPtr<IMMFile> file;
    qm::common::UniqueBstr key;
    files->get_Item(qm::tests::Variant(number), file.Put());
    file->get_Directory(key.Put());
    directories[qm::common::WideString(qm::common::ViewOf(key.Get()))];
  }
  return directories;
}

// ---- The test

class Test {
 public:
  Test(std::vector<qm::tests::Base> bases, fs::path folder, std::uint64_t seed)
      : m_bases(std::move(bases)), m_folder(std::move(folder)), m_seed(seed) {
    if (!m_server.Module()) {
      Fail("the server cannot be loaded");
    }
    fs::create_directories(m_folder / "modules");
    WriteFile(SoundPath(), m_bases[0].bytes);
    m_sound = AskAlone(SoundPath());
  }

  void Run(unsigned first, unsigned end) {
    m_isOne = end - first == 1;
    // Everything that is kept for good exists after a few folders.
    const unsigned warm = std::min(end, first + std::max(2 * kFolderSize, (end - first) / 10));
    for (unsigned number = first; number < end;) {
      const unsigned next = std::min(number + kFolderSize, number < warm ? warm : end);
      RunFolder(number, next);
      number = next;
      WriteOutcome();
      if (number == warm) {
        m_heapBefore = Settle("before");
      }
    }
    const size_t after = Settle("after");
    if (after > m_heapBefore + kHeapAllowance) {
      Find(end, "the heap grew from " + std::to_string(m_heapBefore) + " to " +
                    std::to_string(after) + " bytes");
    }
    WriteOutcome();
  }

  bool HasFinds() const noexcept { return m_hasFinds; }

 private:
  struct Module {
    unsigned number;
    std::string how;
    fs::path path;
  };

  fs::path SoundPath() const { return m_folder / "modules" / "sound.msm"; }

  void Find(unsigned number, const std::string& what) {
    m_hasFinds = true;
    std::printf("module %u: %s\n", number, what.c_str());
  }

  qm::tests::Damaged Damaged(unsigned number, unsigned variant) const {
    qm::tests::Random random(m_seed * 1000003 + number * 2ULL + variant);
    random.Next();
    return qm::tests::Damage(m_bases, random);
  }

  void RunFolder(unsigned first, unsigned end) {
    std::vector<Module> modules;
    for (unsigned number = first; number < end; ++number) {
      qm::tests::Damaged damaged = Damaged(number, 0);
      const fs::path path = m_folder / "modules" / (std::to_string(number) + ".msm");
      WriteFile(path, damaged.bytes);
      modules.push_back({number, std::move(damaged.how), path});
    }
    for (const Module& module : modules) {
      Begin(module.number, module.number + 1, "alone", module.how);
      const qm::tests::Answers answers = Timed(module, [&] { return AskAlone(module.path); });
      Count(module, answers);
    }
    AskInFolder(modules);
    g_begun = 0;
    for (const Module& module : modules) {
      if (!m_isOne) {
        fs::remove(module.path);
      }
    }
  }

  /// Runs `work`; if it is slow, again, because other programs may have taken the time.
  template <class Work>
  qm::tests::Answers Timed(const Module& module, Work work) {
    double fastest = 1e9;
    for (int attempt = 0;; ++attempt) {
      LARGE_INTEGER begin, end, frequency;
      ::QueryPerformanceCounter(&begin);
      qm::tests::Answers answers = work();
      ::QueryPerformanceCounter(&end);
      ::QueryPerformanceFrequency(&frequency);
      fastest = std::min(fastest, static_cast<double>(end.QuadPart - begin.QuadPart) * 1000 /
                                      static_cast<double>(frequency.QuadPart));
      if (fastest < kSlow / 4 || attempt == 4) {
        if (fastest > m_slowest) {
          m_slowest = fastest;
          m_slowestModule = std::to_string(module.number) + " (" + module.how + ")";
        }
        if (fastest >= kSlow) {
          Find(module.number, "takes " + std::to_string(fastest) + " ms");
        }
        return answers;
      }
    }
  }

  /// Opens a module and asks for everything, twice.
  qm::tests::Answers AskAlone(const fs::path& path) {
    const auto module = m_server.Create<IMergeModuleTavik>(CLSID_MergeModule2);
    qm::tests::Answers answers;
    for (const qm::tests::Route route :
         {qm::tests::Route::VirtualTable, qm::tests::Route::Dispatch}) {
      const HRESULT hr =
          module->Open(qm::common::UniqueBstr(qm::common::TryAllocateBstr(path.wstring())).Get());
      const std::wstring opened =
          FAILED(hr) ? qm::tests::FailureText(hr, qm::tests::TakeDescription()) : L"";
      qm::tests::Answers now = qm::tests::ReadModule(module.Get(), route);
      now[L"Open"] = opened;
      if (!answers.empty() && now != answers) {
        m_isUnsteady = true;
      }
      answers = std::move(now);
      qm::tests::ReadModule(module.Get(), route);  // what failed is not read again
    }
    qm::msidb::TargetDirectoryMap directories = DirectoriesOf(*module.Get());
    const HRESULT hr = qm::msidb::ResolveTargetDirectories(
        path.c_str(), qm::traits::MakeTargetPathOptions(), directories);
    answers[L"Target directories"] =
        FAILED(hr) ? qm::tests::FailureText(hr, qm::tests::TakeDescription()) : std::wstring();
    return answers;
  }

  void Count(const Module& module, const qm::tests::Answers& answers) {
    if (std::exchange(m_isUnsteady, false)) {
      Find(module.number, "is not answered the same way twice (" + module.how + ")");
    }
    ++m_outcome[answers.at(L"Open").empty() ? "opened" : "refused: " + KindOf(answers.at(L"Open"))];
    if (!answers.at(L"Open").empty()) {
      return;
    }
    bool isWhole = true;
    for (const auto& [name, answer] : answers) {
      if (qm::tests::IsFailure(answer)) {
        ++m_outcome["opened, " + Narrow(name) + ": " + KindOf(answer)];
        isWhole = false;
      }
    }
    m_outcome["opened and read without a failure"] += isWhole;
  }

  /// Lists a folder of damaged modules and a sound one. Some files are replaced before their tables
  /// are asked for.
  void AskInFolder(const std::vector<Module>& modules) {
    ::SetEnvironmentVariableW(L"QM_MODULE_PATH", (m_folder / "modules").c_str());
    const unsigned end = modules.back().number + 1;
    Begin(modules.front().number, end, "listed with those that follow", "a folder");
    const auto catalog = m_server.Create<IMMCatalog>(CLSID_MMCatalog);
    qm::common::ComPtr<IMergeModules> list;
    long count = 0;
    if (FAILED(catalog->get_MergeModules(list.Put())) || FAILED(list->get_Count(&count))) {
      Find(modules.front().number, "its folder cannot be listed");
      return;
    }
    if (count != static_cast<long>(modules.size()) + 1) {
      Find(modules.front().number, "its folder has " + std::to_string(count) + " modules");
    }
    for (long position = 1; position <= count; ++position) {
      qm::common::ComPtr<IMergeModule> module;
      list->get_Item(qm::tests::Variant(position), module.Put());
      qm::common::ComPtr<IMergeModuleTavik> newest;
      module.QueryInterface(newest.Put());
      qm::common::UniqueBstr path;
      newest->get_Path(path.Put());
      const fs::path file(std::wstring(qm::common::ViewOf(path.Get())));
      if (file == SoundPath()) {
        Begin(modules.front().number, end, "the sound module beside", "a folder");
        AskSound(modules.front().number, newest.Get());
        continue;
      }
      const Module& asked =
          *std::find_if(modules.begin(), modules.end() - 1,
                        [&](const Module& candidate) { return candidate.path == file; });
      if (asked.number % 4 == 0) {
        WriteFile(file, Damaged(asked.number, 1).bytes);
      }
      Begin(asked.number, end, "from the list", asked.how);
      Timed(asked,
            [&] { return qm::tests::ReadModule(newest.Get(), qm::tests::Route::VirtualTable); });
    }
  }

  void AskSound(unsigned number, IMergeModuleTavik* module) {
    for (const auto& [name, answer] :
         qm::tests::ReadModule(module, qm::tests::Route::VirtualTable)) {
      if (name != L"Origin" && name != L"HasOrigin" && m_sound.at(name) != answer) {
        Find(number, "the sound module beside it has another " + Narrow(name));
      }
    }
  }

  /// Drops what is kept from one list to the next, checks that nothing else is left, and lets the
  /// process be measured. Returns the bytes in use.
  size_t Settle(const char* when) {
    ::SetEnvironmentVariableW(L"QM_MODULE_PATH", L"");
    qm::common::ComPtr<IMergeModules> list;
    m_server.Create<IMMCatalog>(CLSID_MMCatalog)->get_MergeModules(list.Put());
    list = nullptr;
    ::SetErrorInfo(0, nullptr);
    const UINT handles = ::MsiCloseAllHandles();
    if (handles != 0 || m_server.DllCanUnloadNow() != S_OK) {
      Find(0, std::to_string(handles) + " installer handles are open" +
                  (m_server.DllCanUnloadNow() != S_OK ? ", and the server is in use" : ""));
    }
    const size_t bytes = qm::bench::HeapBytes();
    m_state += std::string("heap ") + when + " " + std::to_string(bytes) + "\n";
    const fs::path measure = m_folder / "measure";
    std::ofstream(measure) << when;
    for (int i = 0; i < 200 && fs::exists(measure); ++i) {
      ::Sleep(50);
    }
    return bytes;
  }

  void WriteOutcome() const {
    std::ofstream file(m_folder / "outcome.txt");
    for (const auto& [name, count] : m_outcome) {
      file << count << '\t' << name << '\n';
    }
    file << "slowest " << m_slowest << " ms, module " << m_slowestModule << '\n' << m_state;
  }

  const std::vector<qm::tests::Base> m_bases;
  const fs::path m_folder;
  const std::uint64_t m_seed;
  const qm::tests::ComDll m_server{(qm::tests::ProgramFolder() / L"QmMMUpdater2.dll").wstring()};
  qm::tests::Answers m_sound;
  bool m_isOne = false;  ///< whether one module is asked, which stays
  bool m_hasFinds = false;
  bool m_isUnsteady = false;
  std::map<std::string, unsigned> m_outcome;
  double m_slowest = 0;
  std::string m_slowestModule;
  std::string m_state;
  size_t m_heapBefore = 0;
};

}  // namespace

int wmain(int argc, wchar_t** argv) {
  if (argc != 6) {
    std::fputs("usage: hostile BASES FOLDER SEED FIRST END\n", stderr);
    return 2;
  }
  std::setvbuf(stdout, nullptr, _IONBF, 0);
  // What a machine is configured for does not belong here.
  for (const wchar_t* const name : {L"QM_MODULE_PATH", L"QM_USER_MODULE_PATH", L"QM_GALLERY_ROOT",
                                    L"QM_DATA_DIR", L"QM_FILE_INDEX_DIR", L"QM_MODULE_INDEX_DIR"}) {
    ::SetEnvironmentVariableW(name, L"");
  }
  const fs::path folder = argv[2];
  fs::create_directories(folder);
  g_progress =
      ::CreateFileW((folder / "progress.txt").c_str(), GENERIC_WRITE,
                    FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, CREATE_ALWAYS, 0, nullptr);
  ::SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX);
  ::SetUnhandledExceptionFilter(EndCrash);
  ::CreateThread(nullptr, 0, EndHangs, nullptr, 0, nullptr);
  ::CoInitialize(nullptr);

  Test test(ReadBases(argv[1]), folder, std::wcstoull(argv[3], nullptr, 10));
  test.Run(static_cast<unsigned>(::_wtoi(argv[4])), static_cast<unsigned>(::_wtoi(argv[5])));
  return test.HasFinds() ? 1 : 0;
}

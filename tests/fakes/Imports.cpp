#include "tests/fakes/Imports.h"

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <cstring>
#include <map>
#include <optional>
#include <set>
#include <string_view>
#include <type_traits>

#include "common/ExclusiveLock.h"
#include "msidb/MsiHandle.h"

namespace qm::tests {

namespace {

SRWLOCK s_lock = SRWLOCK_INIT;  ///< the server may be called by several threads
FaultKind s_kind;
int s_callsUntilFault = 0;
const char* s_failed = nullptr;
std::map<std::string_view, int> s_calls;
std::vector<std::string_view>
    s_log;  ///< of calls; never grows, because a test may make memory short

struct FixedAnswer {
  std::string_view function;
  UINT result;
  int passedOn;
};
std::vector<FixedAnswer> s_answers;
std::atomic<int> s_heapBlocks = 0;
int s_replaced = 0;  // how many DLLs call the replacements
std::atomic<int> s_fileSearches = 0;
std::set<HANDLE> s_openFiles;
std::map<void*, void*> s_boundLater;  ///< functions of msi.dll and what replaces them

/// Records a call and returns whether it is the one that must fail.
bool Fails(FaultKind kind, const char* name) {
  const common::ExclusiveLock lock(s_lock);
  ++s_calls[name];
  if (s_log.size() < s_log.capacity()) {
    s_log.push_back(name);
  }
  if (kind != s_kind || s_callsUntilFault == 0 || --s_callsUntilFault > 0) {
    return false;
  }
  s_failed = name;
  return true;
}

std::optional<UINT> AnswerTo(std::string_view function) {
  for (FixedAnswer& answer : s_answers) {
    if (answer.function == function && --answer.passedOn < 0) {
      return answer.result;
    }
  }
  return std::nullopt;
}

/// The replacement of a function. Returns `kFailure` for a call that must fail; otherwise calls the
/// original.
template <FaultKind kKind, auto kOriginal, auto kFailure>
struct Replacement;

template <FaultKind kKind, class Result, class... Arguments,
          Result(WINAPI* kOriginal)(Arguments...), auto kFailure>
struct Replacement<kKind, kOriginal, kFailure> {
  static inline const char* s_name;

  static Result Original(Arguments... arguments) {
    if constexpr (kKind == FaultKind::Installer || kKind == FaultKind::None) {
      // The function of msi.dll itself, because this program's imports may be replaced too.
      static auto* const original = installer::Find<Result WINAPI(Arguments...)>(s_name);
      return original(arguments...);
    } else {
      return kOriginal(arguments...);
    }
  }

  static Result WINAPI Call(Arguments... arguments) {
    if (Fails(kKind, s_name)) {
      return static_cast<Result>(kFailure);
    }
    if constexpr (!std::is_pointer_v<Result>) {
      if (const std::optional<UINT> answer = AnswerTo(s_name)) {
        if (std::string_view(s_name) == "MsiSummaryInfoGetPropertyW") {
          Original(arguments...);  // which returns the text whatever its result
        }
        return static_cast<Result>(*answer);
      }
    }
    return Original(arguments...);
  }
};

template <FaultKind kKind, auto kOriginal, auto kFailure = nullptr>
ImportedFunction Replace(const char* dll, const char* name, HRESULT reportedCode = E_OUTOFMEMORY,
                         const wchar_t* reportedAs = nullptr, bool takesPath = false) {
  using Faulty = Replacement<kKind, kOriginal, kFailure>;
  Faulty::s_name = name;
  void* const replacement = reinterpret_cast<void*>(&Faulty::Call);
  return {kKind, dll, name, reportedAs, takesPath, reportedCode, replacement};
}

void* Counted(void* block) {
  s_heapBlocks += block != nullptr;
  return block;
}

void* Malloc(size_t size) {
  return Fails(FaultKind::Heap, "malloc") ? nullptr : Counted(std::malloc(size));
}
void* Calloc(size_t count, size_t size) {
  return Fails(FaultKind::Heap, "calloc") ? nullptr : Counted(std::calloc(count, size));
}
void* Realloc(void* block, size_t size) {
  return block ? Fails(FaultKind::Heap, "realloc") ? nullptr : std::realloc(block, size)
               : Malloc(size);
}
void Free(void* block) {
  s_heapBlocks -= block != nullptr;
  std::free(block);
}

HANDLE WINAPI FindFirst(const wchar_t* pattern, WIN32_FIND_DATAW* found) {
  HANDLE search = ::FindFirstFileW(pattern, found);
  s_fileSearches += search != INVALID_HANDLE_VALUE;
  return search;
}
BOOL WINAPI EndSearch(HANDLE search) {
  --s_fileSearches;
  return ::FindClose(search);
}

HANDLE WINAPI OpenFile(const wchar_t* path, DWORD access, DWORD share,
                       SECURITY_ATTRIBUTES* security, DWORD disposition, DWORD flags,
                       HANDLE fileTemplate) {
  if (Fails(FaultKind::File, "CreateFileW")) {
    ::SetLastError(ERROR_SHARING_VIOLATION);
    return INVALID_HANDLE_VALUE;
  }
  HANDLE file = ::CreateFileW(path, access, share, security, disposition, flags, fileTemplate);
  if (file != INVALID_HANDLE_VALUE) {
    const common::ExclusiveLock lock(s_lock);
    s_openFiles.insert(file);
  }
  return file;
}
BOOL WINAPI GetInformation(HANDLE file, FILE_INFO_BY_HANDLE_CLASS kind, void* information,
                           DWORD size) {
  if (Fails(FaultKind::File, "GetFileInformationByHandleEx")) {
    ::SetLastError(ERROR_NOT_READY);
    return FALSE;
  }
  return ::GetFileInformationByHandleEx(file, kind, information, size);
}
BOOL WINAPI ReadSome(HANDLE file, void* bytes, DWORD count, DWORD* read, OVERLAPPED* place) {
  if (Fails(FaultKind::File, "ReadFile")) {
    ::SetLastError(ERROR_READ_FAULT);
    return FALSE;
  }
  return ::ReadFile(file, bytes, count, read, place);
}
BOOL WINAPI ReadLess(HANDLE file, void* bytes, DWORD count, DWORD* read, OVERLAPPED* place) {
  const bool isShort = Fails(FaultKind::ShortRead, "ReadFile, short");
  return ReadSome(file, bytes, isShort ? count / 2 : count, read, place);
}
BOOL WINAPI CloseFile(HANDLE file) {
  {
    // Before it is closed: another thread may be given the same handle.
    const common::ExclusiveLock lock(s_lock);
    s_openFiles.erase(file);
  }
  return ::CloseHandle(file);
}

// Wrappers, because the address of an imported function is not a constant.
BSTR WINAPI AllocText(const wchar_t* text) { return ::SysAllocString(text); }
BSTR WINAPI AllocTextLen(const wchar_t* text, UINT length) {
  return ::SysAllocStringLen(text, length);
}

template <class Function>
void* Address(Function* function) {
  return reinterpret_cast<void*>(function);
}

/// The system's own function, even while this program's imports are replaced.
using GetProcAddressFunction = FARPROC WINAPI(HMODULE, const char*);
auto* const s_getProcAddress = reinterpret_cast<GetProcAddressFunction*>(reinterpret_cast<void*>(
    ::GetProcAddress(::GetModuleHandleW(L"kernel32.dll"), "GetProcAddress")));

/// Replaces GetProcAddress, by which delay-loaded functions are bound at their first call.
FARPROC WINAPI FindFunction(HMODULE dll, const char* name) {
  FARPROC function = s_getProcAddress(dll, name);
  const auto replaced = s_boundLater.find(Address(function));
  return replaced == s_boundLater.end() ? function : reinterpret_cast<FARPROC>(replaced->second);
}

template <class Function>
ImportedFunction Handwritten(const char* name, Function function, const char* dll = "msvcrt.dll") {
  void* const replacement = reinterpret_cast<void*>(function);
  return {FaultKind::Heap, dll, name, nullptr, false, E_OUTOFMEMORY, replacement};
}

/// A function whose failure is reported as one of the installer function that would have read.
ImportedFunction OfFiles(FaultKind kind, const char* name, DWORD code, void* replacement) {
  return {kind, "kernel32.dll", name, L"Msi", false, HRESULT_FROM_WIN32(code), replacement};
}

#define INSTALLER(name, failure, code, ...)          \
  Replace<FaultKind::Installer, &(name), (failure)>( \
      "msi.dll", #name, static_cast<HRESULT>(0x80070000 | (code)), __VA_ARGS__)
#define OBSERVED(name) Replace<FaultKind::None, &(name), 0>("msi.dll", #name)

const ImportedFunction kFunctions[] = {
    INSTALLER(MsiOpenDatabaseW, 1627, 1627, L"MsiOpenDatabase", true),
    INSTALLER(MsiGetSummaryInformationW, 1620, 1620, L"MsiGetSummaryInformation", true),
    INSTALLER(MsiSummaryInfoGetPropertyW, 1627, 0, nullptr),
    INSTALLER(MsiDatabaseIsTablePersistentW, MSICONDITION_ERROR, 1627,
              L"MsiDatabaseIsTablePersistent"),
    INSTALLER(MsiDatabaseOpenViewW, 1615, 1615, L"MsiOpenDatabaseView"),
    INSTALLER(MsiViewExecute, 1603, 1603, L"MsiViewExecute"),
    INSTALLER(MsiViewFetch, 6, 6, L"MsiViewFetch"),
    INSTALLER(MsiRecordGetStringW, 87, 87, L"MsiRecordGetString"),
    INSTALLER(MsiCreateRecord, 0, 1631, L"MsiCreateRecord"),
    OBSERVED(MsiCloseHandle),
    OBSERVED(MsiDatabaseCommit),
    OBSERVED(MsiDatabaseExportW),
    OBSERVED(MsiDatabaseImportW),
    OBSERVED(MsiGetLastErrorRecord),
    OBSERVED(MsiRecordClearData),
    OBSERVED(MsiRecordSetInteger),
    OBSERVED(MsiRecordSetStringW),
    OBSERVED(MsiViewGetColumnInfo),
    OBSERVED(MsiViewGetErrorW),
    OBSERVED(MsiViewModify),
    Handwritten("malloc", &Malloc),
    Handwritten("calloc", &Calloc),
    Handwritten("realloc", &Realloc),
    Handwritten("free", &Free),
    OfFiles(FaultKind::File, "CreateFileW", ERROR_SHARING_VIOLATION,
            reinterpret_cast<void*>(&OpenFile)),
    OfFiles(FaultKind::File, "GetFileInformationByHandleEx", ERROR_NOT_READY,
            reinterpret_cast<void*>(&GetInformation)),
    OfFiles(FaultKind::File, "ReadFile", ERROR_READ_FAULT, reinterpret_cast<void*>(&ReadLess)),
    OfFiles(FaultKind::ShortRead, "ReadFile, short", ERROR_FILE_INVALID, nullptr),
    Handwritten("CloseHandle", &CloseFile, "kernel32.dll"),
    Handwritten("FindFirstFileW", &FindFirst, "kernel32.dll"),
    Handwritten("FindClose", &EndSearch, "kernel32.dll"),
    Replace<FaultKind::Text, &AllocText>("oleaut32.dll", "SysAllocString"),
    Replace<FaultKind::Text, &AllocTextLen>("oleaut32.dll", "SysAllocStringLen"),
};

/// Replaces the address that one of the functions in `present` has in an import table of
/// `importer`. The section has those of the DLLs that are bound late as well.
bool ReplaceSlot(HMODULE importer, const std::set<void*>& present, void* replacement) {
  auto* const base = reinterpret_cast<BYTE*>(importer);
  auto* const header = reinterpret_cast<IMAGE_NT_HEADERS*>(
      base + reinterpret_cast<IMAGE_DOS_HEADER*>(base)->e_lfanew);
  const IMAGE_SECTION_HEADER* section = IMAGE_FIRST_SECTION(header);
  while (std::memcmp(section->Name, ".idata", 7) != 0) {
    ++section;
  }
  auto* const slots = reinterpret_cast<void**>(base + section->VirtualAddress);
  auto* const end = slots + section->Misc.VirtualSize / sizeof *slots;
  auto* const slot =
      std::find_if(slots, end, [&](void* address) { return present.count(address); });
  DWORD protection = 0;
  if (slot == end || !::VirtualProtect(slot, sizeof *slot, PAGE_READWRITE, &protection)) {
    return false;
  }
  *slot = replacement;
  return true;
}

}  // namespace

bool ReplaceImport(HMODULE importer, const char* dll, const char* name, void* replacement) {
  // By address, which serves imports by name and by ordinal alike.
  void* const function = Address(s_getProcAddress(::LoadLibraryA(dll), name));
  std::set<void*> present{function};
  for (const ImportedFunction& known : kFunctions) {
    if (std::string_view(known.name) == name && known.replacement) {
      present.insert(known.replacement);
    }
  }
  const bool isReplaced = ReplaceSlot(importer, present, replacement);
  if (std::string_view(dll) != "msi.dll") {
    return isReplaced;
  }
  s_boundLater[function] = replacement;
  return true;
}

ReplacedImports::ReplacedImports(HMODULE importer, const char* dll)
    : m_importer(importer), m_dll(dll) {
  if (s_replaced++ == 0) {
    s_heapBlocks = 0;
  }
  s_log.reserve(1000);
  installer::Reset();
  ReplaceSlot(importer, {Address(s_getProcAddress)}, Address(&FindFunction));
  for (const ImportedFunction& function : kFunctions) {
    s_calls[function.name];
    if (function.replacement && (!dll || std::string_view(function.dll) == dll)) {
      ReplaceImport(importer, function.dll, function.name, function.replacement);
    }
  }
}

ReplacedImports::~ReplacedImports() {
  --s_replaced;
  installer::Reset();
  for (const ImportedFunction& function : kFunctions) {
    if (function.replacement && (!m_dll || std::string_view(function.dll) == m_dll)) {
      ReplaceImport(m_importer, function.dll, function.name,
                    Address(s_getProcAddress(::GetModuleHandleA(function.dll), function.name)));
    }
  }
  ReplaceSlot(m_importer, {Address(&FindFunction)}, Address(s_getProcAddress));
  s_boundLater.clear();
}

namespace installer {

void Answer(const char* function, UINT result, int passedOn) {
  s_answers.push_back({function, result, passedOn});
}

void Reset() {
  s_answers.clear();
  s_log.clear();
  for (auto& [name, count] : s_calls) {
    count = 0;
  }
}

const std::vector<std::string_view>& Calls() { return s_log; }

void* Find(const char* function) {
  static const HMODULE module = ::LoadLibraryW(L"msi.dll");
  return Address(s_getProcAddress(module, function));
}

UINT CloseAllHandles() {
  static auto* const closeAll = installer::Find<UINT WINAPI()>("MsiCloseAllHandles");
  return closeAll();
}

}  // namespace installer

void FailCall(FaultKind kind, int call) {
  s_kind = kind;
  s_callsUntilFault = call;
  s_failed = nullptr;
}

void FailNoCall() { s_callsUntilFault = 0; }

const ImportedFunction* FailedFunction() {
  for (const ImportedFunction& function : kFunctions) {
    if (function.name == s_failed) {
      return &function;
    }
  }
  return nullptr;
}

int CallCount(const char* name) { return s_calls[name]; }

int HeapBlocks() { return s_heapBlocks; }

int FileSearches() { return s_fileSearches; }

int OpenFiles() { return static_cast<int>(s_openFiles.size()); }

}  // namespace qm::tests

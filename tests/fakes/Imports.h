#pragma once

#include <windows.h>

#include <string_view>
#include <vector>

namespace qm::tests {

// Replaces functions that a DLL under test imports, in its import table, by ones that count their
// calls and fail on demand.

enum class FaultKind {
  Installer,  ///< functions of the installer that report failures, each in its own way
  File,       ///< opening and reading files
  ShortRead,  ///< reads that succeed but return fewer bytes
  Heap,       ///< malloc and its relatives, which operator new calls
  Text,       ///< SysAllocString and its relatives
  None,       ///< never fails in a sweep
};

struct ImportedFunction {
  FaultKind kind;
  const char* dll;
  const char* name;
  /// The call that the description of a failure names; null if there is no description.
  const wchar_t* reportedAs;
  /// Whether that description contains the path of the module.
  bool takesPath;
  /// The HRESULT that the caller of the server then gets.
  HRESULT reportedCode;
  void* replacement;
};

/// Makes `importer` call `replacement` instead of a function that it imports. Returns false if it
/// does not import it.
bool ReplaceImport(HMODULE importer, const char* dll, const char* name, void* replacement);

/// Makes a DLL or program call the replacements for the life of the object. No answer is set.
/// Counts begin at 0 with the first of several objects.
class ReplacedImports {
 public:
  /// Replaces what `importer` imports from `dll`, or from any DLL if `dll` is null.
  explicit ReplacedImports(HMODULE importer, const char* dll = nullptr);
  ~ReplacedImports();
  ReplacedImports(const ReplacedImports&) = delete;
  ReplacedImports& operator=(const ReplacedImports&) = delete;

 private:
  HMODULE m_importer;
  const char* m_dll;
};

/// Watches the installer's functions as the test program itself calls them.
struct WatchedInstaller : ReplacedImports {
  WatchedInstaller() : ReplacedImports(::GetModuleHandleW(nullptr), "msi.dll") {}
};

// The installer's functions, by their names in msi.dll ("MsiViewFetch").
namespace installer {

/// Sets the result of a function for every call after the first `passedOn`.
void Answer(const char* function, UINT result, int passedOn = 0);

/// Forgets all answers and calls.
void Reset();

/// Names of the functions that were called since Reset.
const std::vector<std::string_view>& Calls();

/// A function of msi.dll itself.
void* Find(const char* function);
template <class Function>
Function* Find(const char* function) {
  return reinterpret_cast<Function*>(installer::Find(function));
}

/// Closes the handles that this thread left open and returns their number.
UINT CloseAllHandles();

}  // namespace installer

/// Makes the `call`th call of a kind from now on fail, counted from 1.
void FailCall(FaultKind kind, int call);

/// Makes no further call fail.
void FailNoCall();

/// The function that was made to fail since FailCall; null if no call has failed.
const ImportedFunction* FailedFunction();

/// How often a replaced function was called since Reset.
int CallCount(const char* name);

/// The number of heap blocks that the server has allocated since the replacement and not freed.
int HeapBlocks();

/// The number of file searches and files that the server has open.
int FileSearches();
int OpenFiles();

/// Calls `run` with call 1, 2, 3, ... of the kind failing until a run in which no call is left to
/// fail. Returns the number of runs in which one failed.
template <class Run>
int SweepFaults(FaultKind kind, Run run) {
  for (int call = 1;; ++call) {
    FailCall(kind, call);
    run(call);
    FailNoCall();
    if (!FailedFunction()) {
      return call - 1;
    }
  }
}

}  // namespace qm::tests

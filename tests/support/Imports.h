#pragma once

#include <windows.h>

// The functions that the server imports, replaced in its import table by ones that count their
// calls and fail on demand.

enum class FaultKind {
  Installer,  ///< functions of the installer that report failures, each in its own way
  File,       ///< opening and reading files
  ShortRead,  ///< reading that succeeds and comes up short
  Heap,       ///< malloc and its relatives, which are under operator new
  Text,       ///< SysAllocString and its relatives
};

struct ImportedFunction {
  FaultKind kind;
  const char* dll;
  const char* name;
  /// How a failure of the function is described; null when it passes in silence.
  const wchar_t* reportedAs;
  /// Whether the path of the module stands in that description.
  bool takesPath;
  /// What the caller of the server then gets.
  HRESULT reportedCode;
  void* replacement;
};

/// Has `importer` call `replacement` instead of a function that it imports; false when it does not
/// import it.
bool ReplaceImport(HMODULE importer, const char* dll, const char* name, void* replacement);

/// Has the server call the replacements of all functions that can fail on demand, and counts its
/// heap blocks from 0.
void ReplaceFaultyImports(HMODULE server);

/// Has call number `call` of a kind fail, counted from 1 and from now.
void FailCall(FaultKind kind, int call);

/// Has no further call fail.
void FailNoCall();

/// The function that was made to fail since FailCall; null when none was.
const ImportedFunction* FailedFunction();

/// How often the server called a replaced function.
int CallCount(const char* name);

/// Blocks that the server allocated on the heap since the replacement, less those that it freed.
int HeapBlocks();

/// File searches and files that the server has open.
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

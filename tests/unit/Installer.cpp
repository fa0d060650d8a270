#include "tests/unit/Installer.h"

#include <algorithm>
#include <optional>

#include "tests/unit/Testing.h"

namespace {

struct FixedAnswer {
  std::string function;
  UINT result;
  int passedOn;
};

std::vector<FixedAnswer> g_answers;
std::vector<std::string> g_calls;

std::optional<UINT> AnswerTo(const char* function) {
  const heap::CPause pause;
  g_calls.emplace_back(function);
  for (FixedAnswer& answer : g_answers) {
    if (answer.function == function && --answer.passedOn < 0) {
      return answer.result;
    }
  }
  return std::nullopt;
}

}  // namespace

namespace installer {

void Answer(const char* function, UINT result, int passedOn) {
  g_answers.push_back({function, result, passedOn});
}

void Reset() {
  g_answers.clear();
  g_calls.clear();
}

const std::vector<std::string>& Calls() { return g_calls; }

int CallsOf(const char* function) {
  return static_cast<int>(std::count(g_calls.begin(), g_calls.end(), function));
}

void* Find(const char* function) {
  static const HMODULE module = ::LoadLibraryW(L"msi.dll");
  return reinterpret_cast<void*>(::GetProcAddress(module, function));
}

UINT CloseAllHandles() {
  static auto* const closeAll = Find<UINT WINAPI()>("MsiCloseAllHandles");
  return closeAll();
}

}  // namespace installer

// A function of msi.dll by the name under which the libraries call it.
#define INSTALLER_FUNCTION(Result, name, parameters, arguments)                     \
  extern "C" Result WINAPI name parameters {                                        \
    static auto* const function = installer::Find<Result WINAPI parameters>(#name); \
    const std::optional<UINT> answer = AnswerTo(#name);                             \
    return answer ? static_cast<Result>(*answer) : function arguments;              \
  }

INSTALLER_FUNCTION(UINT, MsiCloseHandle, (MSIHANDLE any), (any))
INSTALLER_FUNCTION(MSIHANDLE, MsiCreateRecord, (UINT params), (params))
INSTALLER_FUNCTION(UINT, MsiDatabaseCommit, (MSIHANDLE database), (database))
INSTALLER_FUNCTION(UINT, MsiDatabaseExportW,
                   (MSIHANDLE database, LPCWSTR tableName, LPCWSTR folderPath, LPCWSTR fileName),
                   (database, tableName, folderPath, fileName))
INSTALLER_FUNCTION(UINT, MsiDatabaseImportW,
                   (MSIHANDLE database, LPCWSTR folderPath, LPCWSTR fileName),
                   (database, folderPath, fileName))
INSTALLER_FUNCTION(MSICONDITION, MsiDatabaseIsTablePersistentW, (MSIHANDLE database, LPCWSTR name),
                   (database, name))
INSTALLER_FUNCTION(UINT, MsiDatabaseOpenViewW, (MSIHANDLE database, LPCWSTR query, MSIHANDLE* view),
                   (database, query, view))
INSTALLER_FUNCTION(MSIHANDLE, MsiGetLastErrorRecord, (), ())
INSTALLER_FUNCTION(UINT, MsiGetSummaryInformationW,
                   (MSIHANDLE database, LPCWSTR path, UINT count, MSIHANDLE* info),
                   (database, path, count, info))
INSTALLER_FUNCTION(UINT, MsiOpenDatabaseW, (LPCWSTR path, LPCWSTR persist, MSIHANDLE* database),
                   (path, persist, database))
INSTALLER_FUNCTION(UINT, MsiRecordClearData, (MSIHANDLE record), (record))
INSTALLER_FUNCTION(UINT, MsiRecordGetStringW,
                   (MSIHANDLE record, UINT field, LPWSTR buf, DWORD* pcch),
                   (record, field, buf, pcch))
INSTALLER_FUNCTION(UINT, MsiRecordSetInteger, (MSIHANDLE record, UINT field, int value),
                   (record, field, value))
INSTALLER_FUNCTION(UINT, MsiRecordSetStringW, (MSIHANDLE record, UINT field, LPCWSTR value),
                   (record, field, value))
INSTALLER_FUNCTION(UINT, MsiViewExecute, (MSIHANDLE view, MSIHANDLE record), (view, record))
INSTALLER_FUNCTION(UINT, MsiViewFetch, (MSIHANDLE view, MSIHANDLE* record), (view, record))
INSTALLER_FUNCTION(UINT, MsiViewGetColumnInfo, (MSIHANDLE view, MSICOLINFO info, MSIHANDLE* record),
                   (view, info, record))
INSTALLER_FUNCTION(MSIDBERROR, MsiViewGetErrorW, (MSIHANDLE view, LPWSTR buffer, DWORD* pcch),
                   (view, buffer, pcch))
INSTALLER_FUNCTION(UINT, MsiViewModify, (MSIHANDLE view, MSIMODIFY mode, MSIHANDLE record),
                   (view, mode, record))

/// What it reads is handed out whatever it answers.
extern "C" UINT WINAPI MsiSummaryInfoGetPropertyW(MSIHANDLE info, UINT property, UINT* dataType,
                                                  INT* piValue, FILETIME* pftValue, LPWSTR buf,
                                                  DWORD* pcch) {
  static auto* const function =
      installer::Find<decltype(::MsiSummaryInfoGetPropertyW)>("MsiSummaryInfoGetPropertyW");
  const UINT code = function(info, property, dataType, piValue, pftValue, buf, pcch);
  return AnswerTo("MsiSummaryInfoGetPropertyW").value_or(code);
}

// build_module [OUTPUT.msm FOLDER]...: builds merge modules, each from the table text files (*.idt)
// of a folder. If the folder has a file Changes.sql, its SQL statements, one a line, are executed
// afterwards. That file is UTF-8, whereas an import may read the system's code page only.

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <vector>

#include "com/error/ErrorHandler.h"
#include "com/error/Raise.h"
#include "common/Bstr.h"
#include "common/ComPtr.h"
#include "common/FolderFiles.h"
#include "common/Path.h"
#include "msidb/Database.h"
#include "msidb/View.h"

namespace {

/// Returns the names of the table text files, sorted so that the same sources build the same
/// module.
std::vector<CWideString> TableFiles(const CWideString& folder) {
  WIN32_FIND_DATAW found;
  const CUniqueFindHandle search(::FindFirstFileW(JoinPath(folder, L"*.idt").c_str(), &found));
  if (!search) {
    RaiseLastError();
  }
  std::vector<CWideString> names;
  do {
    names.emplace_back(found.cFileName);
  } while (::FindNextFileW(search.Get(), &found));
  std::sort(names.begin(), names.end());
  return names;
}

/// Reads the non-empty lines of a UTF-8 file; none if the file does not exist.
std::vector<CWideString> ReadLines(const CWideString& path) {
  std::ifstream file{std::filesystem::path(std::wstring_view(path))};
  std::vector<CWideString> lines;
  std::string line;
  while (std::getline(file, line)) {
    if (!line.empty()) {
      lines.emplace_back(std::filesystem::u8path(line).wstring());
    }
  }
  return lines;
}

/// Builds a module beside `output` and then moves it there, so that a failure keeps the old file.
void BuildModule(const CWideString& output, const CWideString& folder) {
  const std::vector<CWideString> tables = TableFiles(folder);
  const CWideString unfinished = output + L".new";
  {
    msidb::Database database = msidb::Database::Open(unfinished, MSIDBOPEN_CREATE);
    for (const CWideString& table : tables) {
      database.Import(folder, table);
    }
    for (const CWideString& statement : ReadLines(JoinPath(folder, L"Changes.sql"))) {
      msidb::View().Run(database, statement);
    }
    database.Commit();
  }
  if (!::MoveFileExW(unfinished.c_str(), output.c_str(), MOVEFILE_REPLACE_EXISTING)) {
    RaiseLastError();
  }
}

void PrintError(HRESULT hr) {
  CComPtr<IErrorInfo> info;
  CUniqueBstr description;
  if (::GetErrorInfo(0, info.Put()) == S_OK) {
    info->GetDescription(description.Put());
  }
  std::fprintf(stderr, "build_module: 0x%08lX %ls\n", static_cast<unsigned long>(hr),
               description ? description.Get() : L"");
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
  if (argc % 2 == 0) {
    std::fputs("usage: build_module [OUTPUT.msm FOLDER]...\n", stderr);
    return 2;
  }
  const HRESULT hr = RunAtBoundary(GUID_NULL, [&] {
    for (int i = 1; i < argc; i += 2) {
      BuildModule(FullPath(argv[i]), FullPath(argv[i + 1]));
    }
    return S_OK;
  });
  if (FAILED(hr)) {
    PrintError(hr);
    return 1;
  }
  return 0;
}

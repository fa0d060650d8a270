// build_module [OUTPUT.msm FOLDER]...: builds merge modules, each from the table text files (*.idt)
// of a folder. If the folder has a file Changes.sql, its SQL statements, one per line, are executed
// afterwards. That file is UTF-8, whereas an import may support only the system's code page.

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
std::vector<qm::common::WideString> TableFiles(const qm::common::WideString& folder) {
  WIN32_FIND_DATAW found;
  const qm::common::UniqueFindHandle search(
      ::FindFirstFileW(qm::common::JoinPath(folder, L"*.idt").c_str(), &found));
  if (!search) {
    qm::com::RaiseLastError();
  }
  std::vector<qm::common::WideString> names;
  do {
    names.emplace_back(found.cFileName);
  } while (::FindNextFileW(search.Get(), &found));
  std::sort(names.begin(), names.end());
  return names;
}

/// Reads the non-empty lines of a UTF-8 file. Returns nothing if the file does not exist.
std::vector<qm::common::WideString> ReadLines(const qm::common::WideString& path) {
  std::ifstream file{std::filesystem::path(std::wstring_view(path))};
  std::vector<qm::common::WideString> lines;
  std::string line;
  while (std::getline(file, line)) {
    if (!line.empty()) {
      lines.emplace_back(std::filesystem::u8path(line).wstring());
    }
  }
  return lines;
}

/// Builds a module beside `output` and then moves it there, so that a failure keeps the old file.
void BuildModule(const qm::common::WideString& output, const qm::common::WideString& folder) {
  const std::vector<qm::common::WideString> tables = TableFiles(folder);
  const qm::common::WideString unfinished = output + L".new";
  {
    qm::msidb::Database database = qm::msidb::Database::Open(unfinished, MSIDBOPEN_CREATE);
    for (const qm::common::WideString& table : tables) {
      database.Import(folder, table);
    }
    for (const qm::common::WideString& statement :
         ReadLines(qm::common::JoinPath(folder, L"Changes.sql"))) {
      qm::msidb::View().OpenAndExecute(database, statement);
    }
    database.Commit();
  }
  if (!::MoveFileExW(unfinished.c_str(), output.c_str(), MOVEFILE_REPLACE_EXISTING)) {
    qm::com::RaiseLastError();
  }
}

void PrintError(HRESULT hr) {
  qm::common::ComPtr<IErrorInfo> info;
  qm::common::UniqueBstr description;
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
  const HRESULT hr = qm::com::RunAtBoundary(GUID_NULL, [&] {
    for (int i = 1; i < argc; i += 2) {
      BuildModule(qm::common::ResolveFullPath(argv[i]), qm::common::ResolveFullPath(argv[i + 1]));
    }
    return S_OK;
  });
  if (FAILED(hr)) {
    PrintError(hr);
    return 1;
  }
  return 0;
}

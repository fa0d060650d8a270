#include "tests/support/TestFolder.h"

#include <windows.h>

#include <fstream>

namespace qm::tests {

std::filesystem::path ProgramFolder() {
  wchar_t path[MAX_PATH];
  ::GetModuleFileNameW(nullptr, path, MAX_PATH);
  return std::filesystem::path(path).parent_path();
}

void PutFile(const std::filesystem::path& path, std::string_view bytes) {
  std::ofstream(path, std::ios::binary)
      .write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

TestFolder::TestFolder()
    : m_path(std::filesystem::temp_directory_path() /
             (L"qmtest" + std::to_wstring(::GetCurrentProcessId()))) {
  std::filesystem::remove_all(m_path);  // what an earlier process of this number may have left
  std::filesystem::create_directory(m_path);
}

TestFolder::~TestFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(m_path, ignored);
}

}  // namespace qm::tests

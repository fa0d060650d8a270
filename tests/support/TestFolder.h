#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace qm::tests {

/// The folder of the test program, where the server and its type library lie.
std::filesystem::path ProgramFolder();

/// Writes `bytes` as the whole content of a file.
void PutFile(const std::filesystem::path& path, std::string_view bytes);

/// A new empty folder, removed with everything in it.
class TestFolder {
 public:
  TestFolder();
  ~TestFolder();
  TestFolder(const TestFolder&) = delete;
  TestFolder& operator=(const TestFolder&) = delete;

  const std::filesystem::path& Path() const { return m_path; }

  /// Full path of a file in the folder.
  std::wstring operator/(std::wstring_view name) const { return (m_path / name).wstring(); }

 private:
  std::filesystem::path m_path;
};

}  // namespace qm::tests

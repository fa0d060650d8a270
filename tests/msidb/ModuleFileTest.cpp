#include "msidb/ModuleFile.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "common/UniqueFile.h"
#include "tests/fakes/Imports.h"
#include "tests/support/TestFolder.h"

namespace qm::tests {

namespace {

decltype(&::ReadFile) s_read;
bool s_readFails = false;

BOOL WINAPI Read(HANDLE file, void* bytes, DWORD count, DWORD* read, OVERLAPPED* place) {
  return !s_readFails && s_read(file, bytes, count, read, place);
}

// A read that fails leaves the file pointer at another position than before.
TEST(ModuleFileTest, ReadsTheRightBytesAfterAReadThatFailed) {
  const TestFolder folder;
  const std::wstring path = folder / L"bytes.bin";
  std::vector<char> bytes(3000);
  for (size_t i = 0; i < bytes.size(); ++i) {
    bytes[i] = static_cast<char>(i / 100);
  }
  PutFile(path, {bytes.data(), bytes.size()});

  const HMODULE program = ::GetModuleHandleW(nullptr);
  s_read = reinterpret_cast<decltype(s_read)>(
      reinterpret_cast<void*>(::GetProcAddress(::GetModuleHandleW(L"kernel32.dll"), "ReadFile")));
  ASSERT_TRUE(ReplaceImport(program, "kernel32.dll", "ReadFile", reinterpret_cast<void*>(&Read)));
  msidb::ModuleFile file(path);
  char read[100];
  file.Read(0, read, sizeof read);
  s_readFails = true;
  EXPECT_THROW(file.Read(2000, read, sizeof read), msidb::FileError);
  s_readFails = false;
  file.Read(100, read, sizeof read);
  EXPECT_EQ(1, read[0]);
}

TEST(ModuleFileTest, OnlyAFileThatIsReadInPartsCanBeOfTwoVersions) {
  const TestFolder folder;
  const std::wstring path = folder / L"bytes.bin";
  PutFile(path, std::string(300, 'x'));
  char read[300];
  for (const size_t part : {sizeof read, sizeof read / 2}) {
    msidb::ModuleFile file(path);
    file.Read(0, read, part);
    // Nobody can open the file for writing now, but its times can be set.
    const common::UniqueFile other(::CreateFileW(
        path.c_str(), FILE_WRITE_ATTRIBUTES, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
        nullptr, OPEN_EXISTING, 0, nullptr));
    const FILETIME later{static_cast<DWORD>(part), 0x01D00000};
    ASSERT_TRUE(other && ::SetFileTime(other.Get(), nullptr, nullptr, &later));
    if (part == sizeof read) {
      EXPECT_NO_THROW(file.RequireUnchanged());
    } else {
      EXPECT_THROW(file.RequireUnchanged(), msidb::FileError);
    }
  }
}

}  // namespace

}  // namespace qm::tests

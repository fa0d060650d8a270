// mmcat as a process, where a shell cannot reach.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "client/terminal/Report.h"
#include "common/UniqueFile.h"

namespace {

struct Pipe {
  CUniqueFile reader, writer;
  Pipe() {
    SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
    EXPECT_TRUE(::CreatePipe(reader.Put(), writer.Put(), &inherited, 1 << 16));
    ::SetHandleInformation(reader.Get(), HANDLE_FLAG_INHERIT, 0);
  }
};

/// Starts mmcat, which lies beside this program, with its output in the pipe.
CUniqueFile Start(const std::wstring& arguments, Pipe& output) {
  wchar_t path[MAX_PATH];
  ::GetModuleFileNameW(nullptr, path, MAX_PATH);
  std::wstring line(path);
  line = L'"' + line.substr(0, line.find_last_of(L'\\') + 1) + L"mmcat.exe\" " + arguments;
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  startup.dwFlags = STARTF_USESTDHANDLES;
  startup.hStdOutput = output.writer.Get();
  PROCESS_INFORMATION process{};
  EXPECT_TRUE(::CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr,
                               &startup, &process));
  ::CloseHandle(process.hThread);
  output.writer.Reset();
  return CUniqueFile(process.hProcess);
}

DWORD ExitCodeOf(const CUniqueFile& process) {
  DWORD exitCode = STILL_ACTIVE;
  EXPECT_EQ(WAIT_OBJECT_0, ::WaitForSingleObject(process.Get(), 30000));
  ::GetExitCodeProcess(process.Get(), &exitCode);
  return exitCode;
}

TEST(ClientProcess, APipeThatNobodyReadsIsNoReasonToHang) {
  Pipe output;
  output.reader.Reset();
  EXPECT_EQ(static_cast<DWORD>(kOutputFailed), ExitCodeOf(Start(L"--help", output)));
}

TEST(ClientProcess, AnyTextMakesAValidDocument) {
  Pipe output;
  const CUniqueFile process =
      Start(L"name --json --folder . \"a\xD800\\\"\x01\x7F\\n\x00E4\xD834\xDD1E\"", output);
  std::string document;
  char bytes[4096];
  DWORD count = 0;
  while (::ReadFile(output.reader.Get(), bytes, sizeof bytes, &count, nullptr) && count) {
    document.append(bytes, count);
  }
  EXPECT_EQ(static_cast<DWORD>(kNothingMatched), ExitCodeOf(process));
  EXPECT_EQ("a\xEF\xBF\xBD\"\x01\x7F\\n\xC3\xA4\xF0\x9D\x84\x9E",
            Json::parse(document).at("key").get<std::string>());
}

}  // namespace

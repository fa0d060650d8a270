// mmcat, the console client of the merge module catalog.

#include <windows.h>

#include "client/CommandLine.h"
#include "client/catalog/ServerFailure.h"
#include "client/terminal/Console.h"
#include "client/terminal/Report.h"
#include "text/Utf.h"

// Keep the C library from expanding wildcards: in some arguments they are patterns.
extern "C" int _dowildcard;
int _dowildcard = 0;

namespace mmcat {

namespace {

class ComApartment {
 public:
  ComApartment() { ThrowIfFailed(::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)); }
  ~ComApartment() { ::CoUninitialize(); }
  ComApartment(const ComApartment&) = delete;
  ComApartment& operator=(const ComApartment&) = delete;
};

ExitCode RunCommand(const std::function<ExitCode()>& command) {
  try {
    const ComApartment apartment;
    return command();
  } catch (const ServerUnavailable& failure) {
    PrintRemark("the server failed: " + FormatHResult(failure.HResult()) + ' ' + failure.what());
    PrintRemark(ServerUnavailable::DescribeRemedy() + " mmcat selftest checks them.");
  } catch (const ServerFailure& failure) {
    PrintRemark("the server failed: " + FormatHResult(failure.HResult()) + ' ' + failure.what());
  } catch (const std::exception& failure) {  // such as out of memory
    PrintRemark(failure.what());
  }
  return kServerFailed;
}

ExitCode RunCommand(const CommandLine& commandLine) {
  const ExitCode* const done = std::get_if<ExitCode>(&commandLine);
  const ExitCode exitCode =
      done ? *done : RunCommand(std::get<std::function<ExitCode()>>(commandLine));
  if (!FlushOutput()) {
    PrintRemark("the output could not be written");
    return kOutputFailed;
  }
  return exitCode;
}

}  // namespace

}  // namespace mmcat

int wmain(int argc, wchar_t** argv) {
  const mmcat::ConsoleMode console;
  std::vector<std::string> arguments;
  for (int i = 1; i < argc; ++i) {
    arguments.push_back(qm::text::ToUtf8(argv[i]));
  }
  return mmcat::RunCommand(mmcat::ParseCommandLine(std::move(arguments)));
}

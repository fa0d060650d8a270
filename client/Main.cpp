// mmcat, the console client of the merge module catalog.

#include <windows.h>

#include "client/CommandLine.h"
#include "client/catalog/ServerFailure.h"
#include "client/terminal/Console.h"
#include "client/terminal/Report.h"
#include "text/Utf.h"

using qm::text::ToUtf8;

// Keep the C library from expanding wildcards: in some arguments they are patterns.
extern "C" int _dowildcard;
int _dowildcard = 0;

namespace {

class CComApartment {
 public:
  CComApartment() { Check(::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)); }
  ~CComApartment() { ::CoUninitialize(); }
  CComApartment(const CComApartment&) = delete;
  CComApartment& operator=(const CComApartment&) = delete;
};

ExitCode Run(const std::function<ExitCode()>& command) {
  try {
    const CComApartment apartment;
    return command();
  } catch (const ServerFailure& failure) {
    PrintRemark("the server failed: " + HResultText(failure.Result()) + ' ' + failure.what());
  } catch (const std::exception& failure) {  // such as out of memory
    PrintRemark(failure.what());
  }
  return kServerFailed;
}

ExitCode Run(const CommandLine& commandLine) {
  const ExitCode* const done = std::get_if<ExitCode>(&commandLine);
  const ExitCode exitCode = done ? *done : Run(std::get<std::function<ExitCode()>>(commandLine));
  if (!FlushOutput()) {
    PrintRemark("the output could not be written");
    return kOutputFailed;
  }
  return exitCode;
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
  const CConsoleMode console;
  std::vector<std::string> arguments;
  for (int i = 1; i < argc; ++i) {
    arguments.push_back(ToUtf8(argv[i]));
  }
  return Run(ReadCommandLine(std::move(arguments)));
}

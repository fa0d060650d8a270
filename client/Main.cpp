// mmcat, the console client of the merge module catalog.

#include <windows.h>

#include <new>

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

ExitCode RunArguments(int argc, const wchar_t* const* argv) {
  std::vector<std::string> arguments;
  for (int i = 1; i < argc; ++i) {
    arguments.push_back(qm::text::ToUtf8(argv[i]));
  }
  const CommandLine commandLine = ParseCommandLine(arguments);
  if (const ExitCode* const done = std::get_if<ExitCode>(&commandLine)) {
    return *done;
  }
  const ComApartment apartment;
  return std::get<std::function<ExitCode()>>(commandLine)();
}

/// The same, but reports exceptions and returns kServerFailed for them.
ExitCode RunReporting(int argc, const wchar_t* const* argv) {
  try {
    return RunArguments(argc, argv);
  } catch (const ServerUnavailable& failure) {
    PrintRemark("the server failed: " + FormatHResult(failure.HResult()) + ' ' + failure.what());
    PrintRemark(ServerUnavailable::DescribeRemedy() + " mmcat selftest checks them.");
  } catch (const ServerFailure& failure) {
    PrintRemark("the server failed: " + FormatHResult(failure.HResult()) + ' ' + failure.what());
  } catch (const std::bad_alloc&) {
    PrintRemark("not enough memory");
  } catch (const std::exception& failure) {
    PrintRemark(failure.what());
  }
  return kServerFailed;
}

ExitCode Run(int argc, const wchar_t* const* argv) {
  const ExitCode exitCode = RunReporting(argc, argv);
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
  return mmcat::Run(argc, argv);
}

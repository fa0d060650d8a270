// mmcat, the console client of the merge module catalog.

#include <windows.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>

#include "client/ServerFailure.h"
#include "client/ShowCommand.h"
#include "client/Utf8.h"

// Has the C library expand wildcards in arguments, which Windows leaves to programs.
extern "C" int _dowildcard;
int _dowildcard = -1;

namespace {

class CComApartment {
 public:
  CComApartment() { Check(::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)); }
  ~CComApartment() { ::CoUninitialize(); }
  CComApartment(const CComApartment&) = delete;
  CComApartment& operator=(const CComApartment&) = delete;
};

/// Has a console show the UTF-8 that the client writes; a pipe or file gets the bytes in any case.
class CUtf8Console {
 public:
  CUtf8Console() noexcept : m_previous(IsConsole() ? ::GetConsoleOutputCP() : 0) {
    if (m_previous) {
      ::SetConsoleOutputCP(CP_UTF8);
    }
  }
  ~CUtf8Console() {
    std::fflush(stdout);
    if (m_previous) {
      ::SetConsoleOutputCP(m_previous);
    }
  }
  CUtf8Console(const CUtf8Console&) = delete;
  CUtf8Console& operator=(const CUtf8Console&) = delete;

 private:
  static bool IsConsole() noexcept {
    DWORD mode = 0;
    return ::GetConsoleMode(::GetStdHandle(STD_OUTPUT_HANDLE), &mode) ||
           ::GetConsoleMode(::GetStdHandle(STD_ERROR_HANDLE), &mode);
  }

  UINT m_previous;
};

int Run(std::vector<std::string> arguments) {
  CLI::App app("Shows merge modules (.msm) through the catalog server.", "mmcat");
  // "/home/x.msm" is a path where paths look so, never an option.
  app.allow_windows_style_options(false);
  app.require_subcommand(1);
  app.footer(
      "Exit codes: 0 success, 2 wrong usage, 3 the output cannot be written, 4 some file could not "
      "be read, 5 the server failed.");

  std::vector<std::string> files;
  bool json = false;
  CLI::App* const show = app.add_subcommand("show", "Show module files: identity, summary, tables");
  show->allow_windows_style_options(false);
  show->add_option("FILE", files, "Module files")->required();
  show->add_flag("--json", json, "Print one JSON document");

  try {
    std::reverse(arguments.begin(), arguments.end());  // the order that the parser takes
    app.parse(std::move(arguments));
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? kSuccess : kUsage;
  }

  try {
    const CComApartment apartment;
    const ExitCode exitCode = Show(files, json);
    if (std::fflush(stdout) != 0 || std::ferror(stdout)) {
      std::fputs("mmcat: the output cannot be written\n", stderr);
      return kOutputFailed;
    }
    return exitCode;
  } catch (const ServerFailure& failure) {
    std::fprintf(stderr, "mmcat: the server cannot be used: %s %s\n",
                 HResultText(failure.Result()).c_str(), failure.what());
    return kServerFailed;
  } catch (const std::exception& failure) {  // out of memory, for one
    std::fprintf(stderr, "mmcat: %s\n", failure.what());
    return kServerFailed;
  }
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
  // A console costs one call per character when the program does not buffer.
  static char buffer[1 << 16];
  std::setvbuf(stdout, buffer, _IOFBF, sizeof buffer);

  const CUtf8Console console;
  std::vector<std::string> arguments;
  for (int i = 1; i < argc; ++i) {
    arguments.push_back(ToUtf8(argv[i]));
  }
  return Run(std::move(arguments));
}

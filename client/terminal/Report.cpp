#include "client/terminal/Report.h"

#include <algorithm>
#include <cstdio>
#include <utility>

#include "client/terminal/Console.h"
#include "client/terminal/FailureText.h"
#include "client/terminal/Page.h"
#include "client/terminal/Progress.h"
#include "client/terminal/Style.h"
#include "client/terminal/Text.h"
#include "client/terminal/WrapLines.h"

namespace mmcat {

namespace {

bool g_areHintsDisabled = false;

}  // namespace

Report::Report(const std::string& command, const OutputOptions& options, int documentVersion)
    : m_format(options.format),
      m_colors(m_format == OutputFormat::PlainText && !options.noColor && EnableColors()),
      m_document{{"schema", "mmcat/" + command + '/' + std::to_string(documentVersion)}} {
  for (const FileFailure& failure : options.failures) {
    AddFailure(failure);
  }
}

void Report::Print(const std::string& text) {
  if (m_format == OutputFormat::PlainText) {
    const std::optional<size_t> width = CurrentPage().width;
    const std::string page = width ? WrapLines(text, *width) : text;
    WriteOutput(m_colors ? page : RemoveMarks(page));
  }
}

void Report::PrintConverted(const std::string& output) { WriteOutput(output); }

void Report::AddFailure(FileFailure failure) {
  if (m_printsFailures) {
    PrintRemark(FormatFailure(failure));
  }
  m_failures.push_back(std::move(failure));
}

void Report::AcceptFailuresBeside(const std::set<std::string>& files) {
  for (const FileFailure& failure : m_failures) {
    if (failure.of == FailureOf::File && files.count(failure.file) == 0) {
      AcceptFailures(failure.file);
    }
  }
}

ExitCode Report::Finish(ExitCode outcome) {
  Print(TakeShorteningNote());
  if (IsJson()) {
    Json errors = Json::array();
    for (const FileFailure& failure : m_failures) {
      errors.push_back({{"file", failure.file},
                        {"part", failure.part},
                        {"hresult", FormatHResult(failure.result)},
                        {"description", failure.description}});
    }
    m_document["errors"] = std::move(errors);
    WriteOutput(FormatJson(m_document));
  }
  return ExitCodeAfter(outcome);
}

ExitCode Report::ExitCodeAfter(ExitCode outcome) const {
  const bool someUnreadable =
      std::any_of(m_failures.begin(), m_failures.end(),
                  [&](const FileFailure& failure) { return m_accepted.count(failure.file) == 0; });
  return someUnreadable && outcome != kNothingMatched ? kSomeUnreadable : outcome;
}

std::string FormatJson(const Json& document) {
  return document.dump(2, ' ', false, Json::error_handler_t::replace) + '\n';
}

std::string FormatHResult(HRESULT hr) {
  char text[16];
  std::snprintf(text, sizeof text, "0x%08lX", static_cast<unsigned long>(hr));
  return text;
}

void PrintHint(const std::string& text) {
  if (!g_areHintsDisabled) {
    PrintRemark(text);
  }
}

void DisableHints() noexcept { g_areHintsDisabled = true; }

void PrintRemark(const std::string& text) {
  Progress::Erase();
  const std::string line = "mmcat: " + MakePrintable(text) + '\n';
  WriteError(IsTerminal(STD_ERROR_HANDLE) ? WrapLines(line, GetTerminalWidth(STD_ERROR_HANDLE) - 1)
                                          : line);
}

}  // namespace mmcat

#include "client/terminal/Report.h"

#include <cstdio>

#include "client/terminal/Console.h"
#include "client/terminal/Progress.h"
#include "client/terminal/Style.h"
#include "client/terminal/TextTable.h"

namespace mmcat {

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
    WriteOutput(m_colors ? text : RemoveMarks(text));
  }
}

void Report::PrintConverted(const std::string& output) { WriteOutput(output); }

void Report::AddFailure(const FileFailure& failure) {
  const std::string result = FormatHResult(failure.result);
  m_errors.push_back({{"file", failure.file},
                      {"part", failure.part},
                      {"hresult", result},
                      {"description", failure.description}});
  const std::string subject =
      failure.part.empty() ? failure.file : failure.file + ": " + failure.part;
  PrintRemark(subject + ": " + result + ' ' + failure.description);
}

ExitCode Report::Finish(ExitCode outcome) {
  const bool someUnreadable = outcome != kNothingMatched && !m_errors.empty();
  if (IsJson()) {
    m_document["errors"] = std::move(m_errors);
    WriteOutput(FormatJson(m_document));
  }
  return someUnreadable ? kSomeUnreadable : outcome;
}

std::string FormatJson(const Json& document) {
  return document.dump(2, ' ', false, Json::error_handler_t::replace) + '\n';
}

std::string FormatHResult(HRESULT hr) {
  char text[16];
  std::snprintf(text, sizeof text, "0x%08lX", static_cast<unsigned long>(hr));
  return text;
}

void PrintRemark(const std::string& text) {
  Progress::Erase();
  WriteError("mmcat: " + MakePrintable(text) + '\n');
}

}  // namespace mmcat

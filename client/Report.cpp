#include "client/Report.h"

#include <cstdio>

void Report::Print(const std::string& text) {
  if (!m_json) {
    std::fwrite(text.data(), 1, text.size(), stdout);
  }
}

void Report::AddFailure(const std::string& file, const std::string& part,
                        const ServerFailure& failure) {
  m_errors.push_back({{"file", file},
                      {"part", part},
                      {"hresult", HResultText(failure.Result())},
                      {"description", failure.what()}});
  const std::string subject = part.empty() ? file : file + ": " + part;
  PrintRemark(subject + ": " + HResultText(failure.Result()) + ' ' + failure.what());
}

ExitCode Report::Finish(bool hasFindings) {
  const ExitCode exitCode = !m_errors.empty() ? kSomeUnreadable
                            : hasFindings     ? kFindings
                                              : kSuccess;
  if (m_json) {
    m_document["errors"] = std::move(m_errors);
    const std::string text = m_document.dump(2) + '\n';
    std::fwrite(text.data(), 1, text.size(), stdout);
  }
  return exitCode;
}

void PrintRemark(const std::string& text) { std::fprintf(stderr, "mmcat: %s\n", text.c_str()); }

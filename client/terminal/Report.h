#pragma once

#include <windows.h>

#include <nlohmann/json.hpp>
#include <string>

#include "client/terminal/ExitCode.h"

/// Members keep the order in which they are added.
using Json = nlohmann::ordered_json;

enum class OutputFormat { PlainText, JsonDocument };

/// How a run prints its results.
struct OutputOptions {
  OutputFormat format = OutputFormat::PlainText;
  bool noColor = false;  ///< no colours on a terminal either
};

/// What a run says: results to stdout, as text or as one JSON document, failures to stderr. The
/// document has the failures as well, in its last member, "errors".
class Report {
 public:
  /// A report of a command; its document begins with "schema", which names the command and the
  /// version of what it prints.
  Report(const std::string& command, const OutputOptions& options);

  bool AsJson() const { return m_format == OutputFormat::JsonDocument; }

  /// What the document holds, beside the errors.
  Json& Document() { return m_document; }

  /// Text to stdout, which may be marked (Style.h), for a run without a document.
  void Print(const std::string& text);

  /// A failure to read `file`, or only a part of it; `part` is empty for the whole. The description
  /// is UTF-8 on one line.
  void AddFailure(const std::string& file, const std::string& part, HRESULT result,
                  const std::string& description);

  /// Prints the document, if there is one. The answer is that of a run with this outcome and with
  /// these failures, which go before findings, but not before kNothingMatched.
  ExitCode Finish(ExitCode outcome = kSuccess);

 private:
  OutputFormat m_format;
  bool m_colors;
  Json m_document;
  Json m_errors = Json::array();
};

/// "0x8007065B"
std::string HResultText(HRESULT hr);

/// A remark to stderr: what is as it should not be without being a failure.
void PrintRemark(const std::string& text);

#pragma once

#include <windows.h>

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "client/terminal/ExitCode.h"

namespace mmcat {

/// Keeps members in the order in which they were added.
using Json = nlohmann::ordered_json;

enum class OutputFormat { PlainText, JsonDocument };

/// A file or folder that could not be read. Texts are UTF-8.
struct FileFailure {
  std::string file;
  std::string part;  ///< what of it; empty for the file itself
  HRESULT result = E_FAIL;
  std::string description;  ///< on one line
};

/// How a run prints its results.
struct OutputOptions {
  OutputFormat format = OutputFormat::PlainText;
  bool noColor = false;               ///< even on a terminal that shows them
  std::vector<FileFailure> failures;  ///< from before the command began; its report has them first
};

/// The output of a command: results on stdout, as text or as one JSON document, and failures on
/// stderr. The document lists the failures too, in its last member, "errors".
class Report {
 public:
  /// `command` is the command's name. The document begins with the member "schema", made of that
  /// name and the version of the document.
  Report(const std::string& command, const OutputOptions& options, int documentVersion = 1);

  bool IsJson() const { return m_format == OutputFormat::JsonDocument; }

  /// The document, to which commands add their members. "errors" is added by Finish.
  Json& Document() { return m_document; }

  /// Prints text to stdout, which may be marked (Style.h). Does nothing if the output is JSON.
  void Print(const std::string& text);

  /// Adds a failure to the document, and prints it to stderr.
  void AddFailure(const FileFailure& failure);

  /// Prints the document if the output is JSON. Returns the exit code of a command with this
  /// outcome: failures take precedence over findings, and kNothingMatched over failures.
  ExitCode Finish(ExitCode outcome = kSuccess);

 private:
  OutputFormat m_format;
  bool m_colors;
  Json m_document;
  Json m_errors = Json::array();
};

/// An HRESULT as text, such as "0x8007065B".
std::string FormatHResult(HRESULT hr);

/// Prints a line to stderr, such as a warning or a suggestion. Control characters become blanks.
void PrintRemark(const std::string& text);

}  // namespace mmcat

#pragma once

#include <windows.h>

#include <nlohmann/json.hpp>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "client/terminal/ExitCode.h"
#include "client/terminal/OutputFormat.h"

namespace mmcat {

/// Keeps members in the order in which they were added.
using Json = nlohmann::ordered_json;

enum class FailureOf { File, Folder };

/// A file or folder that could not be read. Texts are UTF-8.
struct FileFailure {
  std::string file;
  std::string part;  ///< the part that failed; empty for the whole file
  HRESULT result = E_FAIL;
  std::string description;  ///< on one line
  FailureOf of = FailureOf::File;
};

/// How a run prints its results.
struct OutputOptions {
  OutputFormat format = OutputFormat::PlainText;
  bool noColor = false;               ///< even on a terminal that shows them
  bool wide = false;                  ///< shorten nothing to fit the terminal
  std::vector<FileFailure> failures;  ///< found before the command began; its report lists them
};

/// The output of a command: results on stdout, in one of the formats, and failures on stderr. The
/// JSON document lists the failures too, in its last member, "errors".
class Report {
 public:
  /// `command` is the command's name. The document begins with the member "schema", made of that
  /// name and the version of the document.
  Report(const std::string& command, const OutputOptions& options, int documentVersion = 1);

  OutputFormat Format() const { return m_format; }
  bool IsJson() const { return m_format == OutputFormat::JsonDocument; }

  /// The document, to which commands add their members. "errors" is added by Finish.
  Json& Document() { return m_document; }

  /// Prints text to stdout, which may be marked (Style.h). Does nothing in other formats.
  void Print(const std::string& text);

  /// Prints the whole output in a format that is neither text nor the JSON document.
  void PrintConverted(const std::string& output);

  /// Prints no failures to stderr from now on, because the results list them.
  void OmitFailureRemarks() noexcept { m_printsFailures = false; }

  /// Adds a failure to the document, and prints it to stderr.
  void AddFailure(FileFailure failure);

  const std::vector<FileFailure>& Failures() const { return m_failures; }

  /// Keeps the failures of a file, which the user accepts, from deciding the exit code.
  void AcceptFailures(const std::string& file) { m_accepted.insert(file); }

  /// The same for all files except `files`, if the results depend on no others.
  void AcceptFailuresBeside(const std::set<std::string>& files);

  /// The exit code of a command with this outcome: failures take precedence over findings, and
  /// kNothingMatched over failures.
  ExitCode ExitCodeAfter(ExitCode outcome) const;

  /// Prints the document if the output is JSON, or below a text a note on what was shortened.
  /// Returns the exit code.
  ExitCode Finish(ExitCode outcome = kSuccess);

 private:
  OutputFormat m_format;
  bool m_colors;
  bool m_printsFailures = true;
  Json m_document;
  std::vector<FileFailure> m_failures;
  std::set<std::string> m_accepted;
};

/// Returns a number as JSON; null for no value.
inline Json MakeNumberOrNull(const std::optional<long>& value) {
  return value ? Json(*value) : Json(nullptr);
}

/// JSON as text with an indent of two blanks and a line break at its end. What is not well-formed
/// UTF-8 becomes U+FFFD.
std::string FormatJson(const Json& document);

/// An HRESULT as text, such as "0x8007065B".
std::string FormatHResult(HRESULT hr);

/// Prints a line to stderr on what could be done better, unless hints are disabled.
void PrintHint(const std::string& text);
void DisableHints() noexcept;

/// Prints a line to stderr, such as a warning or a suggestion. Control characters become blanks.
void PrintRemark(const std::string& text);

}  // namespace mmcat

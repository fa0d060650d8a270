#pragma once

#include <nlohmann/json.hpp>
#include <string>

#include "client/ExitCode.h"
#include "client/ServerFailure.h"

/// Members keep the order in which they are added.
using Json = nlohmann::ordered_json;

/// What a run says: results to stdout, as text or as one JSON document, failures to stderr. The
/// document has the failures as well, in its last member, "errors".
class Report {
 public:
  /// A report of a command; its document begins with "schema", which names the command and the
  /// version of what it prints.
  Report(const std::string& command, bool json)
      : m_json(json), m_document{{"schema", "mmcat/" + command + "/1"}} {}

  bool AsJson() const { return m_json; }

  /// What the document holds, beside the errors.
  Json& Document() { return m_document; }

  /// Text to stdout, for a run without a document.
  void Print(const std::string& text);

  /// A failure to read `file`, or only a part of it; `part` is empty for the whole.
  void AddFailure(const std::string& file, const std::string& part, const ServerFailure& failure);

  /// Prints the document, if there is one. The answer is that of a run with these failures, and
  /// with findings or without.
  ExitCode Finish(bool hasFindings = false);

 private:
  bool m_json;
  Json m_document;
  Json m_errors = Json::array();
};

/// A remark to stderr: what is as it should not be without being a failure.
void PrintRemark(const std::string& text);

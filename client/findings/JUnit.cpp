#include "client/findings/JUnit.h"

#include <set>

#include "client/findings/UnreadableFiles.h"

namespace mmcat {

namespace {

/// Text for XML 1.0, which cannot contain most control characters, not even escaped.
std::string Escape(const std::string& text) {
  std::string escaped;
  for (size_t i = 0; i < text.size(); ++i) {
    const auto c = static_cast<unsigned char>(text[i]);
    // U+FFFE and U+FFFF are the only other characters that are not allowed.
    const bool isNonCharacter =
        text.compare(i, 3, "\xEF\xBF\xBE") == 0 || text.compare(i, 3, "\xEF\xBF\xBF") == 0;
    if (isNonCharacter || (c < 0x20 && c != '\t' && c != '\n' && c != '\r')) {
      escaped += "\xEF\xBF\xBD";
      i += isNonCharacter ? 2 : 0;
    } else if (c < 0x20) {
      escaped += "&#" + std::to_string(c) + ';';  // attributes would lose it otherwise
    } else if (c == '&') {
      escaped += "&amp;";
    } else if (c == '<') {
      escaped += "&lt;";
    } else if (c == '>') {
      escaped += "&gt;";
    } else if (c == '"') {
      escaped += "&quot;";
    } else {
      escaped += text[i];
    }
  }
  return escaped;
}

class Suite {
 public:
  /// Adds a test. `body` is XML; a test without one passed.
  void AddTest(const std::string& className, const std::string& name, const std::string& file,
               const std::string& body) {
    ++m_tests;
    m_text += "    <testcase classname=\"" + Escape(className) + "\" name=\"" + Escape(name) +
              "\" file=\"" + Escape(file) + "\" time=\"0\"";
    m_text += body.empty() ? "/>\n" : ">\n      " + body + "\n    </testcase>\n";
  }

  void AddFailure(const JudgedFinding& finding, const std::string& file, const std::string& name) {
    ++m_failures;
    AddTest(finding.facts.code, name, file,
            "<failure type=\"" + Escape(finding.facts.severity) + "\" message=\"" +
                Escape(finding.facts.text) + "\">" + Escape(file + ": " + finding.facts.text) +
                "</failure>");
  }

  void AddSkipped(const JudgedFinding& finding, const std::string& file, const std::string& name) {
    ++m_skipped;
    const bool isKnown = finding.status == FindingStatus::Baseline;
    AddTest(
        finding.facts.code, name, file,
        std::string("<skipped message=\"") + (isKnown ? "in the baseline" : "ignored") + "\"/>");
  }

  /// Adds a test for a file that cannot be read. That decides the exit code, whatever its severity.
  void AddError(const JudgedFinding& finding, const std::string& file, const std::string& name) {
    ++m_errors;
    AddTest(finding.facts.code, name, file,
            "<error type=\"" + Escape(finding.facts.code) + "\" message=\"" +
                Escape(finding.facts.text) + "\"/>");
  }

  void AddError(const FileFailure& failure) {
    ++m_errors;
    const std::string name =
        failure.part.empty() ? failure.file : failure.file + ": " + failure.part;
    AddTest("unreadable", name, failure.file,
            "<error type=\"" + FormatHResult(failure.result) + "\" message=\"" +
                Escape(failure.description) + "\"/>");
  }

  /// Adds a test for a run that checked nothing.
  void AddUnchecked(const std::string& reason) {
    ++m_errors;
    AddTest("not-checked", "mmcat check", "catalog",
            "<error type=\"not-checked\" message=\"" + Escape(reason) + "\"/>");
  }

  std::string ToString() const {
    const std::string counts = " name=\"mmcat check\" tests=\"" + std::to_string(m_tests) +
                               "\" failures=\"" + std::to_string(m_failures) + "\" errors=\"" +
                               std::to_string(m_errors) + '"';
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<testsuites" + counts +
           " time=\"0\">\n  <testsuite" + counts + " skipped=\"" + std::to_string(m_skipped) +
           "\" time=\"0\">\n" + m_text + "  </testsuite>\n</testsuites>\n";
  }

 private:
  int m_tests = 0;
  int m_failures = 0;
  int m_skipped = 0;
  int m_errors = 0;
  std::string m_text;
};

/// The name of a finding's test: the same in every run, and unique among the tests of its code.
std::string MakeName(const JudgedFinding& finding) {
  std::string name = FormatIdentity(finding.identity);
  if (name != finding.identity.code) {
    name.erase(0, finding.identity.code.size() + 2);  // it is the name of the class
  }
  return finding.occurrence == 1 ? name : name + " #" + std::to_string(finding.occurrence);
}

}  // namespace

std::string FormatJUnit(const CheckResult& result) {
  Suite suite;
  std::set<size_t> withFindings;
  for (const JudgedFinding& finding : result.findings) {
    withFindings.insert(finding.facts.modules.begin(), finding.facts.modules.end());
    const std::string file = LocateFinding(result, finding.facts);
    const std::string name = MakeName(finding);
    if (finding.status != FindingStatus::New) {
      suite.AddSkipped(finding, file, name);
    } else if (IsUnreadable(finding.facts)) {
      suite.AddError(finding, file, name);
    } else if (Fails(finding, result.failOn)) {
      suite.AddFailure(finding, file, name);
    } else {
      suite.AddTest(finding.facts.code, name, file,
                    "<system-out>" + Escape(finding.facts.text) + "</system-out>");
    }
  }
  for (const size_t position : result.scope) {
    if (withFindings.count(position) == 0) {
      const ModuleFacts& module = result.modules[position];
      const std::string file = LocateModule(result, module);
      suite.AddTest("no-findings", module.key + ' ' + file, file, "");
    }
  }
  for (const FileFailure& failure : result.failures) {
    suite.AddError(failure);
  }
  if (!result.whyUnchecked.empty()) {
    suite.AddUnchecked(result.whyUnchecked);
  }
  return suite.ToString();
}

}  // namespace mmcat

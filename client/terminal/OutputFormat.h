#pragma once

namespace mmcat {

/// What a command writes to stdout. Every command can write the first two.
enum class OutputFormat {
  PlainText,
  JsonDocument,
  Csv,
  CycloneDx,
  Sarif,
  JUnit,
  GitHub,
  GitLab,
  Azure,
  TeamCity,
};

/// The name of a format in the option --format.
constexpr const char* NameOf(OutputFormat format) noexcept {
  constexpr const char* kNames[] = {"text",  "json",   "csv",    "cyclonedx", "sarif",
                                    "junit", "github", "gitlab", "azure",     "teamcity"};
  return kNames[static_cast<int>(format)];
}

}  // namespace mmcat

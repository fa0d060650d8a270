#pragma once

namespace mmcat {

/// What a command writes to stdout. Every command can write the first two. The last ones, from
/// Sarif on, are for build servers.
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

/// Returns whether documents of this format say that a run failed. A build server may read nothing
/// else of it.
constexpr bool SaysFailure(OutputFormat format) noexcept { return format >= OutputFormat::Sarif; }

}  // namespace mmcat

#include "client/OutputFile.h"

#include <algorithm>
#include <set>
#include <stdexcept>
#include <utility>

#include "client/catalog/FileIdentity.h"
#include "client/catalog/TextFile.h"
#include "client/catalog/UserPath.h"
#include "client/terminal/Console.h"
#include "client/terminal/Report.h"
#include "text/Fold.h"

namespace mmcat {

namespace {

/// Returns whether the output of a run is to be written to the file.
bool IsResult(ExitCode exitCode, OutputFormat format, const std::string& output) {
  switch (exitCode) {
    case kSuccess:
    case kFindings:
      return true;
    case kSomeUnreadable:
      return !output.empty();
    case kNothingMatched:
      return !output.empty() && SaysFailure(format);
    default:
      return false;
  }
}

bool EndsWith(const std::string& folded, const std::string& end) {
  return folded.size() >= end.size() &&
         folded.compare(folded.size() - end.size(), end.size(), end) == 0;
}

/// Returns whether a name means the stdout of this process. Opened under Wine, it would be the
/// stdout of Wine's server.
bool IsStdout(const std::string& file) {
  return file == "-" || file == "/dev/stdout" || file == "/dev/fd/1" || file == "/proc/self/fd/1";
}

/// Returns whether a name means another stream of a process.
bool IsOtherStream(const std::string& file) {
  for (const char* const start : {"/dev/stderr", "/dev/stdin", "/dev/fd/", "/proc/"}) {
    if (file.rfind(start, 0) == 0) {
      return true;
    }
  }
  return false;
}

/// Returns false, after a remark, if `use` fails because of the file.
template <class Use>
bool Succeeds(const std::string& file, Use use) {
  try {
    use();
    return true;
  } catch (const std::runtime_error& failure) {
    PrintRemark(file + ": " + failure.what());
    return false;
  }
}

}  // namespace

std::optional<OutputFormat> FormatOfFile(const std::string& file) {
  static const std::pair<const char*, OutputFormat> kExtensions[] = {
      {".cdx.json", OutputFormat::CycloneDx},  // before ".json", with which it ends
      {".json", OutputFormat::JsonDocument},
      {".csv", OutputFormat::Csv},
      {".sarif", OutputFormat::Sarif},
      {".xml", OutputFormat::JUnit}};
  const std::string folded = qm::text::FoldCase(file);
  for (const auto& [extension, format] : kExtensions) {
    if (EndsWith(folded, extension)) {
      return format;
    }
  }
  return std::nullopt;
}

bool HasForeignExtension(const std::string& file) {
  const std::string name = qm::text::FoldCase(GetFileName(file));
  const size_t dot = name.find_last_of('.');
  // Lists only known extensions, because a temporary file can have any.
  static const std::set<std::string> kForeign{".docx", ".htm", ".html", ".jsonl", ".ods", ".pdf",
                                              ".tsv",  ".xls", ".xlsx", ".yaml",  ".yml"};
  return dot != std::string::npos && kForeign.count(name.substr(dot)) > 0;
}

std::string ExplainOutputFile(const std::string& file, const std::vector<std::string>& filesInUse) {
  if (IsStdout(file) || IsOtherStream(file)) {
    return "";
  }
  const std::string target = qm::text::FoldCase(ResolveTarget(file));
  for (const char* const extension : {".msm", ".ini"}) {
    if (EndsWith(target, extension)) {
      return file + ": a file with the extension " + extension + " is not for output";
    }
  }
  const std::optional<FileIdentity> identity = IdentifyFile(file);
  const bool isInUse =
      identity && std::any_of(filesInUse.begin(), filesInUse.end(), [&](const std::string& used) {
        return IdentifyFile(used) == identity;
      });
  return isInUse ? file + ": this file is used by the command itself" : "";
}

ExitCode PrintToFile(const std::string& file, OutputFormat format,
                     const std::function<ExitCode()>& command) {
  if (IsStdout(file)) {
    return command();
  }
  if (IsOtherStream(file)) {
    PrintRemark(file + ": this cannot be written; use - or a pipe");
    return kOutputFailed;
  }
  if (!Succeeds(file, [&] { RequireWritable(file); })) {
    return kOutputFailed;
  }
  CollectOutput();
  const ExitCode exitCode = command();
  const std::string output = TakeOutput();
  const bool isWritten =
      !IsResult(exitCode, format, output) || Succeeds(file, [&] { WriteTextFile(file, output); });
  return isWritten ? exitCode : kOutputFailed;
}

}  // namespace mmcat

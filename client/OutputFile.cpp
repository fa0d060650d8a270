#include "client/OutputFile.h"

#include <cstring>
#include <stdexcept>
#include <utility>

#include "client/catalog/TextFile.h"
#include "client/terminal/Console.h"
#include "client/terminal/Report.h"
#include "text/Fold.h"

namespace mmcat {

namespace {

/// Returns whether a run left something for the file's reader.
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
      {".cdx.json", OutputFormat::CycloneDx},  // before the extension that it ends with
      {".json", OutputFormat::JsonDocument},
      {".csv", OutputFormat::Csv},
      {".sarif", OutputFormat::Sarif},
      {".xml", OutputFormat::JUnit}};
  const std::string folded = qm::text::FoldCase(file);
  for (const auto& [extension, format] : kExtensions) {
    const size_t size = std::strlen(extension);
    if (folded.size() > size && folded.compare(folded.size() - size, size, extension) == 0) {
      return format;
    }
  }
  return std::nullopt;
}

ExitCode PrintToFile(const std::string& file, OutputFormat format,
                     const std::function<ExitCode()>& command) {
  // Wine would open the stdout of its server.
  if (file == "-" || file == "/dev/stdout") {
    return command();
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

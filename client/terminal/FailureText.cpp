#include "client/terminal/FailureText.h"

namespace mmcat {

std::string ExplainFailure(HRESULT result) {
  switch (HRESULT_FACILITY(result) == FACILITY_WIN32 ? HRESULT_CODE(result) : 0) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
      return "The file does not exist.";
    case ERROR_ACCESS_DENIED:
      return "The file may not be read.";
    case ERROR_SHARING_VIOLATION:
      return "Another program has the file open.";
    case ERROR_OPEN_FAILED:
      return "The file is not a merge module.";
    case ERROR_BAD_QUERY_SYNTAX:  // a table that every module has is missing
      return "The file is a database without the tables of a merge module, such as an installation "
             "package.";
    case ERROR_FILE_CORRUPT:
      return "The file is damaged or not a merge module.";
    default:
      return "";
  }
}

std::string FormatFailure(const FileFailure& failure) {
  const bool isFile = failure.part.empty() && failure.of == FailureOf::File;
  const std::string meaning = isFile ? ExplainFailure(failure.result) : "";
  const std::string code = FormatHResult(failure.result);
  return failure.file + (failure.part.empty() ? "" : ": " + failure.part) + ": " +
         (meaning.empty() ? failure.description + " [" + code + ']'
                          : meaning + " [" + code + ' ' + failure.description + ']');
}

}  // namespace mmcat

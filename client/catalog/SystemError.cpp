#include "client/catalog/SystemError.h"

#include "client/catalog/ServerFailure.h"
#include "common/SystemMessage.h"
#include "text/Utf.h"

namespace mmcat {

std::string FormatSystemError(DWORD code) {
  const qm::common::UniqueLocalText text = qm::common::FormatSystemMessage(code);
  return text ? ToOneLine(qm::text::ToUtf8(text.Get())) : "error " + std::to_string(code);
}

}  // namespace mmcat

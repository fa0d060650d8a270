#include "common/SystemMessage.h"

namespace qm::common {

UniqueLocalText FormatSystemMessage(DWORD code) noexcept {
  wchar_t* text = nullptr;
  // With FORMAT_MESSAGE_ALLOCATE_BUFFER the buffer argument takes the address of the pointer.
  ::FormatMessageW(
      FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
      nullptr, code, 0, reinterpret_cast<wchar_t*>(&text), 0, nullptr);
  return UniqueLocalText(text);
}

}  // namespace qm::common

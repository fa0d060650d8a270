#include "tests/support/Testing.h"

#include <cstdlib>
#include <new>

#include "common/ComPtr.h"
#include "common/SystemMessage.h"

namespace qm::tests {

common::WideString SystemText(HRESULT hr) {
  const common::UniqueLocalText text = common::FormatSystemMessage(static_cast<DWORD>(hr));
  return text ? text.Get() : L"Unknown error";
}

bool TakeErrorObject() {
  common::ComPtr<IErrorInfo> info;
  return ::GetErrorInfo(0, info.Put()) == S_OK;
}

namespace heap {
namespace {

long g_live = 0;
long g_untilFault = 0;  // negative when it has happened

}  // namespace

long Live() noexcept { return g_live; }

bool SetFault(long position) noexcept { return std::exchange(g_untilFault, position) < 0; }

}  // namespace heap

}  // namespace qm::tests

// The other forms of operator new and delete call these.
void* operator new(std::size_t size) {
  const bool fails = qm::tests::heap::g_untilFault > 0 && --qm::tests::heap::g_untilFault == 0;
  void* const block = fails ? nullptr : std::malloc(size);
  ::SetLastError(qm::tests::heap::kLastError);
  if (!block) {
    qm::tests::heap::g_untilFault = -1;
    throw std::bad_alloc();
  }
  ++qm::tests::heap::g_live;
  return block;
}

void operator delete(void* block) noexcept {
  qm::tests::heap::g_live -= block ? 1 : 0;
  std::free(block);
}

void operator delete(void* block, std::size_t) noexcept { operator delete(block); }

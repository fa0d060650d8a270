#include "tests/support/Testing.h"

#include <cstdlib>
#include <new>

#include "common/ComPtr.h"
#include "common/SystemMessage.h"

CWideString SystemText(HRESULT hr) {
  const CUniqueLocalText text = FormatSystemText(static_cast<DWORD>(hr));
  return text ? text.Get() : L"Unknown error";
}

bool TakeErrorObject() {
  CComPtr<IErrorInfo> info;
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

// The other forms of operator new and delete call these.
void* operator new(std::size_t size) {
  using namespace heap;
  const bool fails = g_untilFault > 0 && --g_untilFault == 0;
  void* const block = fails ? nullptr : std::malloc(size);
  ::SetLastError(kLastError);
  if (!block) {
    g_untilFault = -1;
    throw std::bad_alloc();
  }
  ++g_live;
  return block;
}

void operator delete(void* block) noexcept {
  heap::g_live -= block ? 1 : 0;
  std::free(block);
}

void operator delete(void* block, std::size_t) noexcept { operator delete(block); }

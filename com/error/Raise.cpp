#include "com/error/Raise.h"

#include <new>

#include "com/error/ComException.h"
#include "com/error/win32_exception.h"

namespace qm::com {

void Raise(const com_exception& failure) { throw new CComException(failure); }

void RaiseHResult(HRESULT hr) { Raise(com_exception(hr)); }

void RaiseLastError() { throw win32_exception(); }

common::UniqueBstr AllocateBstr(std::wstring_view text) {
  common::UniqueBstr copy(common::TryAllocateBstr(text));
  if (!copy) {
    throw std::bad_alloc();
  }
  return copy;
}

}  // namespace qm::com

#include "com/error/Raise.h"

#include <new>

#include "com/error/ComException.h"
#include "com/error/win32_exception.h"

void Raise(const com_exception& failure) { throw new CComException(failure); }

void RaiseHResult(HRESULT hr) { Raise(com_exception(hr)); }

void RaiseLastError() { throw qm::win32_exception(); }

CUniqueBstr MakeBstr(std::wstring_view text) {
  CUniqueBstr copy(AllocBstr(text));
  if (!copy) {
    throw std::bad_alloc();
  }
  return copy;
}

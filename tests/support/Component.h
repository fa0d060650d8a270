#pragma once

#include <windows.h>

#include <string>
#include <string_view>

#include "idl/siblings.h"
#include "tests/support/ComDll.h"

/// Keeps COM on this thread; declared before the objects that need it.
class CComThread {
 public:
  CComThread() { ::CoInitialize(nullptr); }
  ~CComThread() { ::CoUninitialize(); }
  CComThread(const CComThread&) = delete;
  CComThread& operator=(const CComThread&) = delete;
};

/// Expects that scripts know these members, given in slot order and divided by blanks, by dispatch
/// identifiers in that order from 1, and Item by 0.
void ExpectMembers(IDispatch* object, const wchar_t* members);

/// Writes `bytes` as the whole content of a file.
void PutFile(const std::wstring& path, std::string_view bytes);

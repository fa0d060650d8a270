#pragma once

#include <windows.h>

#include <filesystem>
#include <fstream>
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

/// Writes `bytes` as the whole content of a file.
inline void PutFile(const std::wstring& path, std::string_view bytes) {
  std::ofstream(std::filesystem::path(path), std::ios::binary)
      .write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

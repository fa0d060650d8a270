#include "siblings/Component/File.h"

#include <climits>
#include <new>

#include "com/error/Raise.h"
#include "com/error/win32_exception.h"

CUniqueFile OpenFile(const CWideString& path) noexcept {
  return CUniqueFile(::CreateFileW(path.c_str(), GENERIC_READ,
                                   FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                   OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
}

std::string ReadBytes(const CUniqueFile& file, const CWideString& path) {
  LARGE_INTEGER size{};
  if (!::GetFileSizeEx(file.Get(), &size)) {
    RaiseForFile(path);
  }
  if (size.QuadPart > INT_MAX) {
    throw std::bad_alloc();
  }
  std::string bytes(static_cast<size_t>(size.QuadPart), '\0');
  DWORD length = 0;
  if (!::ReadFile(file.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &length, nullptr)) {
    RaiseForFile(path);
  }
  bytes.resize(length);
  return bytes;
}

void RaiseForFile(const CWideString& path) {
  com_exception failure(qm::HResultFromCode(::GetLastError()));
  failure.description = path + L": " + failure.description;
  Raise(failure);
}

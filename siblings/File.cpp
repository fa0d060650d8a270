#include "siblings/File.h"

#include <climits>
#include <new>

#include "com/error/Raise.h"
#include "com/error/win32_exception.h"

namespace qm::siblings {

common::UniqueFile OpenFile(const common::WideString& path) noexcept {
  return common::UniqueFile(::CreateFileW(
      path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
      OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
}

std::string ReadAllBytes(const common::UniqueFile& file, const common::WideString& path) {
  LARGE_INTEGER size{};
  if (!::GetFileSizeEx(file.Get(), &size)) {
    RaiseLastFileError(path);
  }
  if (size.QuadPart > INT_MAX) {
    throw std::bad_alloc();
  }
  std::string bytes(static_cast<size_t>(size.QuadPart), '\0');
  DWORD length = 0;
  if (!::ReadFile(file.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &length, nullptr)) {
    RaiseLastFileError(path);
  }
  bytes.resize(length);
  return bytes;
}

void RaiseLastFileError(const common::WideString& path) {
  com_exception failure(HResultFromCode(::GetLastError()));
  failure.description = path + L": " + failure.description;
  com::Raise(failure);
}

}  // namespace qm::siblings

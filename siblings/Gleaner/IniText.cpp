#include "siblings/Gleaner/IniText.h"

#include <windows.h>

#include <climits>
#include <cstring>
#include <new>

#include "common/UniqueHandle.h"
#include "server/error/Raise.h"
#include "server/error/win32_exception.h"

namespace {

struct FileTraits {
  using Handle = HANDLE;
  static Handle None() noexcept { return INVALID_HANDLE_VALUE; }
  static void Close(Handle file) noexcept { ::CloseHandle(file); }
};

using CUniqueFile = CUniqueHandle<FileTraits>;

[[noreturn]] void RaiseFor(const CWideString& path) {
  com_exception failure(qm::HResultFromCode(::GetLastError()));
  failure.description = path + L": " + failure.description;
  Raise(failure);
}

std::string ReadBytes(const CWideString& path) {
  const CUniqueFile file(::CreateFileW(path.c_str(), GENERIC_READ,
                                       FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                       nullptr, OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
  LARGE_INTEGER size{};
  if (!file || !::GetFileSizeEx(file.Get(), &size)) {
    RaiseFor(path);
  }
  if (size.QuadPart > INT_MAX) {
    throw std::bad_alloc();
  }
  std::string bytes(static_cast<size_t>(size.QuadPart), '\0');
  DWORD length = 0;
  if (!::ReadFile(file.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &length, nullptr)) {
    RaiseFor(path);
  }
  bytes.resize(length);
  return bytes;
}

bool RemovePrefix(std::string_view& bytes, std::string_view prefix) noexcept {
  if (bytes.substr(0, prefix.size()) != prefix) {
    return false;
  }
  bytes.remove_prefix(prefix.size());
  return true;
}

std::wstring FromUtf16(std::string_view bytes) {
  std::wstring text(bytes.size() / sizeof(wchar_t), L'\0');
  std::memcpy(text.data(), bytes.data(), text.size() * sizeof(wchar_t));
  return text;
}

std::wstring FromUtf16BigEndian(std::string_view bytes) {
  std::wstring text = FromUtf16(bytes);
  for (wchar_t& unit : text) {
    unit = static_cast<wchar_t>(unit << 8 | unit >> 8);
  }
  return text;
}

std::wstring FromCodePage(UINT codePage, std::string_view bytes) {
  // No code page makes more than one UTF-16 unit of a byte.
  std::wstring text(bytes.size(), L'\0');
  const int length =
      ::MultiByteToWideChar(codePage, 0, bytes.data(), static_cast<int>(bytes.size()), text.data(),
                            static_cast<int>(text.size()));
  text.resize(static_cast<size_t>(length));
  text.shrink_to_fit();
  return text;
}

}  // namespace

std::wstring DecodeText(std::string_view bytes) {
  if (RemovePrefix(bytes, "\xEF\xBB\xBF")) {
    return FromCodePage(CP_UTF8, bytes);
  }
  if (RemovePrefix(bytes, "\xFF\xFE")) {
    return FromUtf16(bytes);
  }
  if (RemovePrefix(bytes, "\xFE\xFF")) {
    return FromUtf16BigEndian(bytes);
  }
  return FromCodePage(CP_ACP, bytes);
}

std::wstring ReadText(const CWideString& path) { return DecodeText(ReadBytes(path)); }

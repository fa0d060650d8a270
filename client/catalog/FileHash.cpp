#include "client/catalog/FileHash.h"

#include <windows.h>
// Needs the types of windows.h.
#include <bcrypt.h>

#include <array>
#include <vector>

#include "client/catalog/ServerFailure.h"
#include "common/Path.h"
#include "common/UniqueFile.h"

namespace mmcat {

namespace {

struct AlgorithmTraits {
  using Handle = BCRYPT_ALG_HANDLE;
  static Handle None() noexcept { return nullptr; }
  static void Close(Handle algorithm) noexcept { ::BCryptCloseAlgorithmProvider(algorithm, 0); }
};

struct HashTraits {
  using Handle = BCRYPT_HASH_HANDLE;
  static Handle None() noexcept { return nullptr; }
  static void Close(Handle hash) noexcept { ::BCryptDestroyHash(hash); }
};

void ThrowIfNotDone(NTSTATUS status) { ThrowIfFailed(status < 0 ? HRESULT_FROM_NT(status) : S_OK); }

void ThrowUnless(BOOL succeeded) {
  ThrowIfFailed(succeeded ? S_OK : HRESULT_FROM_WIN32(::GetLastError()));
}

}  // namespace

std::string FormatHex(const unsigned char* bytes, size_t size) {
  constexpr char kDigits[] = "0123456789abcdef";
  std::string text;
  for (size_t i = 0; i < size; ++i) {
    text += kDigits[bytes[i] >> 4U];
    text += kDigits[bytes[i] & 15U];
  }
  return text;
}

std::string HashFile(const qm::common::WideString& path) {
  const qm::common::UniqueFile file(::CreateFileW(
      qm::common::ToExtendedPath(path).c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_DELETE,
      nullptr, OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
  ThrowUnless(file ? TRUE : FALSE);
  qm::common::UniqueHandle<AlgorithmTraits> algorithm;
  ThrowIfNotDone(
      ::BCryptOpenAlgorithmProvider(algorithm.Put(), BCRYPT_SHA256_ALGORITHM, nullptr, 0));
  qm::common::UniqueHandle<HashTraits> hash;
  ThrowIfNotDone(::BCryptCreateHash(algorithm.Get(), hash.Put(), nullptr, 0, nullptr, 0, 0));
  std::vector<UCHAR> buffer(65536);
  DWORD size = 0;
  do {
    ThrowUnless(
        ::ReadFile(file.Get(), buffer.data(), static_cast<DWORD>(buffer.size()), &size, nullptr));
    ThrowIfNotDone(::BCryptHashData(hash.Get(), buffer.data(), size, 0));
  } while (size > 0);
  std::array<UCHAR, 32> digest{};
  ThrowIfNotDone(::BCryptFinishHash(hash.Get(), digest.data(), digest.size(), 0));
  return FormatHex(digest.data(), digest.size());
}

}  // namespace mmcat

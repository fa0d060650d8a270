#include "client/catalog/Hash.h"

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

class Sha256 {
 public:
  Sha256() {
    ThrowIfNotDone(
        ::BCryptOpenAlgorithmProvider(m_algorithm.Put(), BCRYPT_SHA256_ALGORITHM, nullptr, 0));
    ThrowIfNotDone(::BCryptCreateHash(m_algorithm.Get(), m_hash.Put(), nullptr, 0, nullptr, 0, 0));
  }

  void Add(const char* bytes, size_t size) {
    // The function only reads them.
    auto* const input = const_cast<UCHAR*>(reinterpret_cast<const UCHAR*>(bytes));
    ThrowIfNotDone(::BCryptHashData(m_hash.Get(), input, static_cast<ULONG>(size), 0));
  }

  std::string Finish() {
    std::array<UCHAR, 32> digest{};
    ThrowIfNotDone(::BCryptFinishHash(m_hash.Get(), digest.data(), digest.size(), 0));
    return FormatHex(digest.data(), digest.size());
  }

 private:
  qm::common::UniqueHandle<AlgorithmTraits> m_algorithm;
  qm::common::UniqueHandle<HashTraits> m_hash;  // closed first
};

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

std::string HashBytes(std::string_view bytes) {
  Sha256 hash;
  hash.Add(bytes.data(), bytes.size());
  return hash.Finish();
}

std::string HashFile(const qm::common::WideString& path) {
  const qm::common::UniqueFile file(::CreateFileW(
      qm::common::ToExtendedPath(path).c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_DELETE,
      nullptr, OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
  ThrowUnless(file ? TRUE : FALSE);
  Sha256 hash;
  std::vector<char> buffer(65536);
  DWORD size = 0;
  do {
    ThrowUnless(
        ::ReadFile(file.Get(), buffer.data(), static_cast<DWORD>(buffer.size()), &size, nullptr));
    hash.Add(buffer.data(), size);
  } while (size > 0);
  return hash.Finish();
}

}  // namespace mmcat

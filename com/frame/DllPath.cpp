#include "com/frame/DllPath.h"

#include "com/error/Raise.h"

namespace qm::com {

common::WideString DllPath(HINSTANCE instance) {
  std::wstring path(MAX_PATH, L'\0');
  for (;;) {
    const DWORD length =
        ::GetModuleFileNameW(instance, path.data(), static_cast<DWORD>(path.size()));
    if (length == 0) {
      RaiseLastError();
    }
    if (length < path.size()) {
      return common::WideString(path.c_str(), length);
    }
    path.resize(path.size() * 2);
  }
}

}  // namespace qm::com

#pragma once

#include <windows.h>

namespace qm::com {

/// Implements ISupportErrorInfo: returns S_OK for the listed interfaces, S_FALSE for all others.
template <class... Interfaces>
class SupportErrorInfo : public ISupportErrorInfo {
 public:
  STDMETHOD(InterfaceSupportsErrorInfo)(REFIID iid) override {
    return (... || (iid == __uuidof(Interfaces))) ? S_OK : S_FALSE;
  }
};

}  // namespace qm::com

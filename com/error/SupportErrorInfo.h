#pragma once

#include <windows.h>

/// Implements ISupportErrorInfo: returns S_OK for the listed interfaces, S_FALSE for all others.
template <class... Interfaces>
class CSupportErrorInfo : public ISupportErrorInfo {
 public:
  STDMETHOD(InterfaceSupportsErrorInfo)(REFIID iid) override {
    return (... || (iid == __uuidof(Interfaces))) ? S_OK : S_FALSE;
  }
};

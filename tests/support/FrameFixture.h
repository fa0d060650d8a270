#pragma once

#include "com/frame/ComObject.h"
#include "com/frame/ComServer.h"
#include "com/frame/DispatchImpl.h"
#include "common/DllLifetime.h"
#include "idl/qmmmupdater.h"
#include "tests/support/Testing.h"

namespace qm::tests {

inline constexpr CLSID kProbeClass = {0x5DA1A6F2, 1, 2, {1, 2, 3, 4, 5, 6, 7, 8}};
inline constexpr CLSID kOtherClass = {0x5DA1A6F3, 1, 2, {1, 2, 3, 4, 5, 6, 7, 8}};

/// A class that shows how the frame treats its objects.
class Probe : public com::DispatchImpl<IMMCatalogManagerVelmora>, public com::ComObjectRoot {
 public:
  using InterfaceMap =
      com::InterfaceMap<com::Via<IMMCatalogManagerVelmora, IMMCatalogManagerVelmora, IDispatch>>;

  Probe() : m_memory(std::wstring(100, L'x')) { ++s_live; }
  Probe(const Probe&) = delete;
  Probe& operator=(const Probe&) = delete;
  virtual ~Probe() { --s_live; }
  HRESULT FinalConstruct() noexcept { return s_finalConstruct; }

  /// Kind 0 returns this object, kind 1 one without IDispatch; others fail without an error object.
  STDMETHOD(GetCatalog)(long kind, IUnknown** catalog) override {
    switch (kind) {
      case 0:
        return QueryInterface(__uuidof(IUnknown), reinterpret_cast<void**>(catalog));
      case 1:
        return ::CreateErrorInfo(reinterpret_cast<ICreateErrorInfo**>(catalog));
      default:
        return E_ABORT;
    }
  }

  static inline int s_live = 0;
  static inline HRESULT s_finalConstruct = S_OK;

 private:
  common::WideString m_memory;
};

/// A server of two classes of probes.
class FrameFixture : public ::testing::Test {
 protected:
  void SetUp() override {
    static const com::ObjectMapEntry entries[] = {
        {&kOtherClass, L"Test.Other.1", L"Test.Other", 0, &com::CreateComObject<Probe>},
        {&kProbeClass, L"Test.Probe.1", L"Test.Probe", 0, &com::CreateComObject<Probe>},
    };
    m_module.Init({entries, std::size(entries), nullptr, &LIBID_QMMMUpdaterLib, L"qmmmupdater.tlb"},
                  nullptr);
  }
  void TearDown() override {
    common::EndDllLifetime();
    EXPECT_EQ(0, com::DllLock::Count());
    EXPECT_EQ(0, Probe::s_live);
  }

  common::ComPtr<IClassFactory> Factory(REFCLSID clsid = kProbeClass) {
    common::ComPtr<IClassFactory> factory;
    EXPECT_EQ(S_OK, m_module.GetClassObject(clsid, __uuidof(IClassFactory),
                                            reinterpret_cast<void**>(factory.Put())));
    return factory;
  }

  com::ComServer& m_module = com::ComServer::Instance();
};

}  // namespace qm::tests

#include "com/frame/ClassFactory.h"

#include "tests/fakes/OuterObject.h"
#include "tests/support/FrameFixture.h"

namespace qm::tests {

namespace {

using ClassFactoryTest = FrameFixture;

TEST_F(ClassFactoryTest, FactoriesAreCachedAndOnlyClientsLock) {
  IClassFactory* const first = Factory().Get();  // only the server holds it from here on
  EXPECT_EQ(0, com::DllLock::Count());
  EXPECT_NE(first, Factory(kOtherClass).Get());
  {
    const common::ComPtr<IClassFactory> factory = Factory();
    EXPECT_EQ(first, factory.Get());
    EXPECT_EQ(1, com::DllLock::Count());
    factory->LockServer(TRUE);
    common::ComPtr<IDispatch> object;
    EXPECT_EQ(S_OK, factory->CreateInstance(nullptr, __uuidof(IDispatch),
                                            reinterpret_cast<void**>(object.Put())));
    const common::ComPtr<IClassFactory> again = Factory();
    EXPECT_EQ(3, com::DllLock::Count());  // all references on the factory, the server, the object
  }
  EXPECT_EQ(1, com::DllLock::Count());
  Factory()->LockServer(FALSE);

  // A client may hold a factory for longer than the server does.
  const common::ComPtr<IClassFactory> kept = Factory();
  common::EndDllLifetime();
  EXPECT_EQ(E_POINTER, kept->CreateInstance(nullptr, __uuidof(IUnknown), nullptr));
}

TEST_F(ClassFactoryTest, FailedCreationLeavesNothing) {
  OuterObject outer;
  void* out = nullptr;
  const auto expectNothing = [&] {
    EXPECT_EQ(nullptr, out);
    EXPECT_EQ(0, Probe::s_live);
    EXPECT_EQ(0, com::DllLock::Count());
    EXPECT_EQ(1U, outer.references);
  };
  const auto create = [&](IUnknown* controlling, REFIID iid) {
    out = &out;
    return Factory()->CreateInstance(controlling, iid, &out);
  };
  Factory();  // creates it
  out = &out;
  EXPECT_EQ(CLASS_E_CLASSNOTAVAILABLE, m_module.GetClassObject(IID_NULL, IID_IUnknown, &out));
  expectNothing();
  out = &out;
  EXPECT_EQ(E_NOINTERFACE, m_module.GetClassObject(kProbeClass, IID_IDispatch, &out));
  expectNothing();
  EXPECT_EQ(E_POINTER, com::CreateComObject<Probe>(nullptr, IID_IUnknown, nullptr));
  EXPECT_EQ(E_NOINTERFACE, create(nullptr, __uuidof(IMMFile)));
  expectNothing();
  EXPECT_EQ(CLASS_E_NOAGGREGATION, create(&outer, IID_IDispatch));
  expectNothing();
  IUnknown* const outers[] = {nullptr, &outer};
  for (IUnknown* const controlling : outers) {
    Probe::s_finalConstruct = E_ACCESSDENIED;
    EXPECT_EQ(E_ACCESSDENIED, create(controlling, IID_IUnknown));
    expectNothing();
    Probe::s_finalConstruct = S_OK;
    heap::SweepFaults([&] { return create(controlling, IID_IUnknown); }, expectNothing);
    static_cast<IUnknown*>(out)->Release();
  }
}

}  // namespace

}  // namespace qm::tests

#include "com/frame/DispatchImpl.h"

#include "tests/support/FrameFixture.h"

namespace qm::tests {

namespace {

class DispatchImplTest : public FrameFixture {
 protected:
  void SetUp() override {
    FrameFixture::SetUp();
    m_object = com::ComObject<Probe>::Create();
  }
  void TearDown() override {
    m_object.Release();
    FrameFixture::TearDown();
  }

  HRESULT GetCatalog(long kind, VARIANT* result, EXCEPINFO* exception = nullptr) {
    VARIANT argument;
    argument.vt = VT_I4;
    argument.lVal = kind;
    DISPPARAMS parameters = {&argument, nullptr, 1, 0};
    return m_object->Invoke(1, IID_NULL, 0, DISPATCH_METHOD, &parameters, result, exception,
                            nullptr);
  }

  common::ComPtr<com::ComObject<Probe>> m_object;
};

TEST_F(DispatchImplTest, TypeInformationIsLoadedAgainWhenTheServerStartsAgain) {
  EXPECT_EQ(E_POINTER, m_object->GetTypeInfoCount(nullptr));
  EXPECT_EQ(E_POINTER, m_object->GetTypeInfo(0, 0, nullptr));
  common::ComPtr<ITypeInfo> info;
  EXPECT_EQ(DISP_E_BADINDEX, m_object->GetTypeInfo(1, 0, info.Put()));
  EXPECT_FALSE(info);
  for (int i = 0; i < 2; ++i) {  // loaded again after EndDllLifetime
    EXPECT_EQ(S_OK, m_object->GetTypeInfo(0, 0, info.Put()));
    common::EndDllLifetime();
  }
  static com::TypeInfoHolder unknown(kProbeClass, com::TypeLibrary::Interfaces);
  EXPECT_EQ(TYPE_E_ELEMENTNOTFOUND, unknown.GetTypeInfo(info.Put()));
  EXPECT_FALSE(info);
}

TEST_F(DispatchImplTest, InvalidCallsAreRefused) {
  wchar_t right[] = L"getCATALOG";
  wchar_t wrong[] = L"Wrong";
  DISPID id = 0;
  const auto find = [&](REFIID iid, wchar_t* name, UINT count, DISPID* ids) {
    return m_object->GetIDsOfNames(iid, name ? &name : nullptr, count, 0, ids);
  };
  EXPECT_EQ(S_OK, find(IID_NULL, right, 1, &id));
  EXPECT_EQ(1, id);
  EXPECT_EQ(DISP_E_UNKNOWNNAME, find(IID_NULL, wrong, 1, &id));
  EXPECT_EQ(DISP_E_UNKNOWNINTERFACE, find(IID_IDispatch, right, 1, &id));
  EXPECT_EQ(E_INVALIDARG, find(IID_NULL, nullptr, 1, &id));
  EXPECT_EQ(E_INVALIDARG, find(IID_NULL, right, 0, &id));
  EXPECT_EQ(E_INVALIDARG, find(IID_NULL, right, 1, nullptr));

  DISPPARAMS none{};
  const auto invoke = [&](DISPID member, REFIID iid, DISPPARAMS* parameters) {
    return m_object->Invoke(member, iid, 0, DISPATCH_METHOD, parameters, nullptr, nullptr, nullptr);
  };
  EXPECT_EQ(DISP_E_UNKNOWNINTERFACE, invoke(1, IID_IDispatch, &none));
  EXPECT_EQ(E_INVALIDARG, invoke(1, IID_NULL, nullptr));
  EXPECT_EQ(DISP_E_MEMBERNOTFOUND, invoke(99, IID_NULL, &none));

  // An older error object does not explain a member that fails without one.
  LeaveErrorObject(L"older");
  EXCEPINFO exception{};
  EXPECT_EQ(DISP_E_EXCEPTION, GetCatalog(9, nullptr, &exception));
  EXPECT_EQ(E_ABORT, exception.scode);
  EXPECT_EQ(nullptr, exception.bstrDescription);
}

TEST_F(DispatchImplTest, ObjectsAreReturnedToScripts) {
  const VARTYPE types[] = {VT_DISPATCH, VT_UNKNOWN};
  for (long kind = 0; kind < 2; ++kind) {
    VARIANT result;
    ::VariantInit(&result);
    EXPECT_EQ(S_OK, GetCatalog(kind, &result));
    EXPECT_EQ(types[kind], result.vt);
    ::VariantClear(&result);
    EXPECT_EQ(S_OK, GetCatalog(kind, nullptr));
  }
}

}  // namespace

}  // namespace qm::tests

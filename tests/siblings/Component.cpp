#include "tests/siblings/Component.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

CComponent::CComponent(const std::wstring& path) : m_module(::LoadLibraryW(path.c_str())) {
  if (!m_module) {
    throw std::runtime_error("the component cannot be loaded");
  }
}

CComponent::~CComponent() { ::FreeLibrary(m_module); }

HRESULT CComponent::DllGetClassObject(REFCLSID clsid, REFIID iid, void** out) const {
  return Export<HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**)>("DllGetClassObject")(clsid, iid,
                                                                                         out);
}

HRESULT CComponent::CallPlain(const char* name) const {
  return Export<HRESULT(STDAPICALLTYPE*)()>(name)();
}

void CComponent::Create(REFCLSID clsid, REFIID iid, void** out) const {
  CComPtr<IClassFactory> factory;
  if (SUCCEEDED(DllGetClassObject(clsid, __uuidof(IClassFactory),
                                  reinterpret_cast<void**>(factory.Put())))) {
    factory->CreateInstance(nullptr, iid, out);
  }
}

void ExpectMembers(IDispatch* object, const wchar_t* members) {
  std::wistringstream names(members);
  std::wstring name;
  for (DISPID slot = 1; names >> name; ++slot) {
    wchar_t* text = name.data();
    DISPID id = DISPID_UNKNOWN;
    EXPECT_EQ(S_OK, object->GetIDsOfNames(IID_NULL, &text, 1, LOCALE_NEUTRAL, &id));
    EXPECT_EQ(name == L"Item" ? 0 : slot, id) << testing::PrintToString(name);
  }
}

void PutFile(const std::wstring& path, std::string_view bytes) {
  std::ofstream(std::filesystem::path(path), std::ios::binary)
      .write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

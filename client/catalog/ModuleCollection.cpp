#include "client/catalog/ModuleCollection.h"

#include <algorithm>
#include <memory>
#include <new>

#include "client/catalog/Object.h"
#include "common/Bstr.h"
#include "common/CollectionIndex.h"
#include "common/IgnoringCase.h"

namespace mmcat {

namespace {

using SharedModules = std::shared_ptr<const ModuleObjects>;

class ModuleEnumerator final : public Object<IEnumVARIANT> {
 public:
  ModuleEnumerator(SharedModules modules, size_t next)
      : m_modules(std::move(modules)), m_next(next) {}

  STDMETHOD(QueryInterface)(REFIID iid, void** out) override {
    return Query<IEnumVARIANT>(iid, out);
  }

  STDMETHOD(Next)(ULONG count, VARIANT* values, ULONG* fetched) override {
    if (!values || (!fetched && count != 1)) {
      return E_POINTER;
    }
    ULONG copied = 0;
    for (; copied < count && m_next < m_modules->size(); ++copied, ++m_next) {
      values[copied].vt = VT_DISPATCH;
      values[copied].pdispVal = qm::common::ComPtr<IMergeModule>((*m_modules)[m_next]).Detach();
    }
    if (fetched) {
      *fetched = copied;
    }
    return copied == count ? S_OK : S_FALSE;
  }

  STDMETHOD(Skip)(ULONG count) override {
    const size_t left = m_modules->size() - m_next;
    m_next += std::min<size_t>(count, left);
    return count <= left ? S_OK : S_FALSE;
  }

  STDMETHOD(Reset)() override {
    m_next = 0;
    return S_OK;
  }

  STDMETHOD(Clone)(IEnumVARIANT** clone) override {
    if (!clone) {
      return E_POINTER;
    }
    *clone = new (std::nothrow) ModuleEnumerator(m_modules, m_next);
    return *clone ? S_OK : E_OUTOFMEMORY;
  }

 private:
  SharedModules m_modules;
  size_t m_next;
};

class ModuleCollection final : public DispatchObject<IMergeModules> {
 public:
  explicit ModuleCollection(ModuleObjects modules)
      : m_modules(std::make_shared<const ModuleObjects>(std::move(modules))) {}

  STDMETHOD(QueryInterface)(REFIID iid, void** out) override {
    return Query<IMergeModules, IDispatch>(iid, out);
  }

  STDMETHOD(get_Item)(VARIANT index, IMergeModule** item) override {
    if (!item) {
      return E_POINTER;
    }
    *item = nullptr;
    const qm::common::CollectionIndex wanted(index);
    const size_t position = wanted.IsKey() ? Find(wanted.Key()) : wanted.Position();
    if (position >= m_modules->size()) {
      return E_INVALIDARG;
    }
    *item = qm::common::ComPtr<IMergeModule>((*m_modules)[position]).Detach();
    return S_OK;
  }

  STDMETHOD(get_Count)(long* count) override {
    if (!count) {
      return E_POINTER;
    }
    *count = static_cast<long>(m_modules->size());
    return S_OK;
  }

  STDMETHOD(get__NewEnum)(IUnknown** enumerator) override { return MakeEnumerator(enumerator); }
  STDMETHOD(get_Enumerator)(IEnumVARIANT** enumerator) override {
    return MakeEnumerator(enumerator);
  }

 private:
  /// Returns the position of the first module with this key, or the number of modules.
  size_t Find(std::wstring_view key) const {
    const auto hasKey = [&](const qm::common::ComPtr<IMergeModule>& module) {
      qm::common::UniqueBstr text;
      return SUCCEEDED(module->get_Key(text.Put())) &&
             qm::common::EqualsIgnoringCase(qm::common::ViewOf(text.Get()), key);
    };
    return static_cast<size_t>(std::find_if(m_modules->begin(), m_modules->end(), hasKey) -
                               m_modules->begin());
  }

  template <class Interface>
  HRESULT MakeEnumerator(Interface** enumerator) {
    if (!enumerator) {
      return E_POINTER;
    }
    *enumerator = new (std::nothrow) ModuleEnumerator(m_modules, 0);
    return *enumerator ? S_OK : E_OUTOFMEMORY;
  }

  SharedModules m_modules;
};

}  // namespace

qm::common::ComPtr<IMergeModules> MakeModuleCollection(ModuleObjects modules) {
  return qm::common::ComPtr<IMergeModules>::Adopt(new ModuleCollection(std::move(modules)));
}

}  // namespace mmcat

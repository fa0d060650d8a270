#include "analysis/Elements.h"

#include <algorithm>
#include <vector>

#include "com/frame/ComObject.h"
#include "text/Fold.h"
#include "text/Utf.h"

namespace qm::analysis {

namespace {

class ElementEnum : public IEnumVARIANT, public com::ComObjectRoot {
 public:
  using InterfaceMap = com::InterfaceMap<com::Via<IEnumVARIANT, IEnumVARIANT>>;

  void Init(std::shared_ptr<const Elements> elements, size_t position) noexcept {
    m_elements = std::move(elements);
    m_position = position;
  }

  STDMETHOD(Next)(ULONG count, VARIANT* values, ULONG* fetched) override {
    return com::RunAtBoundary(GUID_NULL, [&]() -> HRESULT {
      if (!values || (!fetched && count != 1)) {
        return E_POINTER;
      }
      if (fetched) {
        *fetched = 0;
      }
      // Creates all objects before it hands over the first, so that after a failure the caller has
      // none.
      const size_t left = m_elements->Count() - m_position;
      std::vector<common::ComPtr<IDispatch>> made(std::min<size_t>(count, left));
      for (size_t i = 0; i < made.size(); ++i) {
        made[i] = m_elements->At(m_position + i);
      }
      for (size_t i = 0; i < made.size(); ++i) {
        values[i].vt = VT_DISPATCH;
        values[i].pdispVal = made[i].Detach();
      }
      m_position += made.size();
      if (fetched) {
        *fetched = static_cast<ULONG>(made.size());
      }
      return made.size() == count ? S_OK : S_FALSE;
    });
  }

  STDMETHOD(Skip)(ULONG count) override {
    const size_t left = m_elements->Count() - m_position;
    m_position += std::min<size_t>(count, left);
    return count <= left ? S_OK : S_FALSE;
  }

  STDMETHOD(Reset)() override {
    m_position = 0;
    return S_OK;
  }

  STDMETHOD(Clone)(IEnumVARIANT** clone) override {
    return com::FillOut(GUID_NULL, clone, [&] {
      const auto enumerator =
          common::ComPtr<IUnknown>::Adopt(MakeEnumerator(m_elements, m_position));
      return enumerator.QueryInterface(clone);
    });
  }

 private:
  std::shared_ptr<const Elements> m_elements;
  size_t m_position = 0;
};

}  // namespace

size_t Elements::Find(std::wstring_view key) {
  if (!m_getKey) {
    return m_count;
  }
  if (!m_positions) {
    std::unordered_map<std::string, size_t> positions;
    for (size_t position = 0; position < m_count; ++position) {
      positions.emplace(text::FoldCase(m_getKey(position)), position);
    }
    m_positions = std::move(positions);
  }
  const auto found = m_positions->find(text::FoldCase(text::ToUtf8(key)));
  return found == m_positions->end() ? m_count : found->second;
}

IUnknown* MakeEnumerator(const std::shared_ptr<const Elements>& elements, size_t position) {
  auto enumerator = com::ComObject<ElementEnum>::Create();
  enumerator->Init(elements, position);
  return enumerator.Detach();
}

}  // namespace qm::analysis

#include "catalog/KeyTable.h"

#include <algorithm>

#include "text/Fold.h"

namespace qm::catalog {

namespace {

/// A view of the lower-case key of a record, which is composed unit by unit.
class RecordKeyView {
 public:
  explicit RecordKeyView(const module::CCacheMSM& record) noexcept
      : m_id(record.ModuleID()), m_version(record.Version()) {
    if (m_version.empty()) {
      m_version = L"0";
    }
  }

  size_t size() const noexcept { return m_id.size() + 1 + m_version.size(); }
  wchar_t operator[](size_t position) const noexcept {
    if (position == m_id.size()) {
      return L':';
    }
    return text::FoldCase(position < m_id.size() ? m_id[position]
                                                 : m_version[position - m_id.size() - 1]);
  }

 private:
  std::wstring_view m_id;
  std::wstring_view m_version;
};

/// Compares two keys unit by unit. Returns a value less than, equal to or greater than 0, as
/// std::wstring_view::compare does.
template <class KeyA, class KeyB>
int Compare(const KeyA& a, const KeyB& b) noexcept {
  const size_t common = std::min(a.size(), b.size());
  for (size_t i = 0; i < common; ++i) {
    if (a[i] != b[i]) {
      return a[i] < b[i] ? -1 : 1;
    }
  }
  return a.size() == b.size() ? 0 : a.size() < b.size() ? -1 : 1;
}

}  // namespace

bool KeyTable::Contains(std::wstring_view key,
                        const std::vector<std::weak_ptr<module::CCacheMSM>>& records) {
  if (!m_isFilled) {
    Fill(records);
  }
  const auto found = std::lower_bound(m_records.begin(), m_records.end(), key,
                                      [](const auto& record, std::wstring_view wanted) {
                                        return Compare(RecordKeyView(*record), wanted) < 0;
                                      });
  return found != m_records.end() && Compare(RecordKeyView(**found), key) == 0;
}

void KeyTable::Fill(const std::vector<std::weak_ptr<module::CCacheMSM>>& records) {
  m_records.reserve(records.size());
  for (const auto& record : records) {
    if (auto held = record.lock()) {
      m_records.push_back(std::move(held));
    }
  }
  std::sort(m_records.begin(), m_records.end(), [](const auto& a, const auto& b) {
    return Compare(RecordKeyView(*a), RecordKeyView(*b)) < 0;
  });
  m_isFilled = true;
}

void KeyTable::Clear() noexcept {
  m_isFilled = false;
  decltype(m_records)().swap(m_records);  // also frees the memory
}

}  // namespace qm::catalog

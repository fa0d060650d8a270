#include "siblings/Gleaner/IniDocument.h"

#include <algorithm>
#include <numeric>

#include "siblings/Gleaner/IniText.h"
#include "text/Fold.h"

namespace qm::siblings {

namespace {

/// The maximum number of names that are searched linearly; most sections have fewer.
constexpr size_t kMaxLinearSearch = 16;

bool IsLineBreak(wchar_t c) noexcept { return c == L'\n' || c == L'\r'; }

std::wstring_view Trim(std::wstring_view text) noexcept {
  // Control characters are treated as blanks, because old editors end a file with Ctrl+Z.
  constexpr auto isBlank = [](wchar_t c) { return c <= L' '; };
  while (!text.empty() && isBlank(text.front())) {
    text.remove_prefix(1);
  }
  while (!text.empty() && isBlank(text.back())) {
    text.remove_suffix(1);
  }
  return text;
}

}  // namespace

IniDocument::IniDocument(std::wstring text) : m_text(std::move(text)) {
  const wchar_t* const end = m_text.data() + m_text.size();
  for (const wchar_t* line = m_text.data(); line < end;) {
    const wchar_t* const lineEnd = std::find_if(line, end, IsLineBreak);
    AddLine(Trim({line, static_cast<size_t>(lineEnd - line)}));
    line = lineEnd + 1;
  }
  m_sections.shrink_to_fit();
  m_keys.shrink_to_fit();
}

std::shared_ptr<const IniDocument> IniDocument::Load(const common::WideString& path) {
  return std::make_shared<const IniDocument>(ReadTextFile(path));
}

void IniDocument::AddLine(std::wstring_view line) {
  if (line.empty() || line.front() == L';') {
    return;
  }
  if (line.front() == L'[') {
    line = line.substr(1, line.rfind(L']') - 1);  // the rest of the line if it has no "]"
    m_sections.push_back({ToSpan(Trim(line)), static_cast<uint32_t>(m_keys.size()), 0});
  } else if (!m_sections.empty()) {
    const size_t nameEnd = std::min(line.find(L'='), line.size());
    const size_t valueBegin = std::min(nameEnd + 1, line.size());
    m_keys.push_back(
        {ToSpan(Trim(line.substr(0, nameEnd))), ToSpan(Trim(line.substr(valueBegin)))});
    ++m_sections.back().keyCount;
  }
}

IniDocument::Span IniDocument::ToSpan(std::wstring_view part) const noexcept {
  return {static_cast<uint32_t>(part.data() - m_text.data()), static_cast<uint32_t>(part.size())};
}

const IniDocument::Section* IniDocument::GetSection(size_t position) const noexcept {
  return position < m_sections.size() ? &m_sections[position] : nullptr;
}

const IniDocument::Key* IniDocument::GetKey(const Section& section,
                                            size_t position) const noexcept {
  return position < section.keyCount ? &m_keys[section.firstKey + position] : nullptr;
}

const IniDocument::Section* IniDocument::FindSection(std::wstring_view name) const {
  return Find(m_sections.data(), m_sections.size(), name,
              [this]() -> Order& { return m_sectionOrder; });
}

const IniDocument::Key* IniDocument::FindKey(const Section& section, std::wstring_view name) const {
  return Find(m_keys.data() + section.firstKey, section.keyCount, name,
              [&]() -> Order& { return m_keyOrders[&section]; });
}

/// Returns positions sorted by name; equal names stay in file order.
template <class Entry>
IniDocument::Order IniDocument::SortByName(const Entry* entries, size_t count) const {
  Order order(count);
  std::iota(order.begin(), order.end(), 0);
  std::sort(order.begin(), order.end(), [&](uint32_t a, uint32_t b) {
    const int result = text::CompareFolded(GetText(entries[a].name), GetText(entries[b].name));
    return result != 0 ? result < 0 : a < b;
  });
  return order;
}

template <class Entry, class GetOrder>
const Entry* IniDocument::Find(const Entry* entries, size_t count, std::wstring_view name,
                               GetOrder getOrder) const {
  const Entry* const end = entries + count;
  if (count <= kMaxLinearSearch) {
    const Entry* const found = std::find_if(entries, end, [&](const Entry& entry) {
      return entry.name.length == name.size() &&
             text::CompareFolded(GetText(entry.name), name) == 0;
    });
    return found != end ? found : nullptr;
  }
  Order& order = getOrder();
  if (order.empty()) {
    order = SortByName(entries, count);
  }
  const auto place =
      std::lower_bound(order.begin(), order.end(), name, [&](uint32_t position, auto wanted) {
        return text::CompareFolded(GetText(entries[position].name), wanted) < 0;
      });
  const bool found =
      place != order.end() && text::CompareFolded(GetText(entries[*place].name), name) == 0;
  return found ? entries + *place : nullptr;
}

}  // namespace qm::siblings

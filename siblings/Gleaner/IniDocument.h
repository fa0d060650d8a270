#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "common/WideString.h"

namespace qm::siblings {

/// The parsed contents of an INI file: its sections and their keys, in file order. Not thread-safe:
/// lookups by name build indexes.
///
/// Lines end at CR, LF or both. Blanks (all characters up to the space) around lines, names and
/// values are ignored. A line that begins with ";" is a comment. A line that begins with "[" starts
/// a section, whose name ends at the last "]" of the line, or at the end of the line. Any other
/// line is a key, whose name ends at the first "="; without "=" the whole line is the name and the
/// value is empty. Keys before the first section are ignored. Any text is valid.
///
/// Lookups ignore case and find the first of several equal names. If a section occurs twice, the
/// second one can be reached only by position.
class IniDocument {
 public:
  /// A part of the text, in UTF-16 units.
  struct Span {
    uint32_t begin;
    uint32_t length;
  };
  struct Key {
    Span name;
    Span value;
  };
  struct Section {
    Span name;
    uint32_t firstKey;
    uint32_t keyCount;
  };

  /// Parses `text`. Throws std::bad_alloc.
  explicit IniDocument(std::wstring text);

  /// Reads and parses the file at `path`; see ReadTextFile for its failures.
  static std::shared_ptr<const IniDocument> Load(const common::WideString& path);

  std::wstring_view GetText(Span span) const noexcept {
    return {m_text.data() + span.begin, span.length};
  }

  /// Lookups by position, counted from 0; null at the end. Sections and keys live as long as this
  /// object.
  const Section* GetSection(size_t position) const noexcept;
  const Key* GetKey(const Section& section, size_t position) const noexcept;

  /// Lookups by name; null if there is no such name. Throws std::bad_alloc.
  const Section* FindSection(std::wstring_view name) const;
  const Key* FindKey(const Section& section, std::wstring_view name) const;

 private:
  using Order = std::vector<uint32_t>;

  void AddLine(std::wstring_view line);
  Span ToSpan(std::wstring_view part) const noexcept;

  template <class Entry>
  Order SortByName(const Entry* entries, size_t count) const;
  template <class Entry, class GetOrder>
  const Entry* Find(const Entry* entries, size_t count, std::wstring_view name,
                    GetOrder getOrder) const;

  std::wstring m_text;
  std::vector<Section> m_sections;
  std::vector<Key> m_keys;
  // Positions sorted by name, built on demand where there are too many names for a linear search.
  mutable Order m_sectionOrder;
  mutable std::map<const Section*, Order> m_keyOrders;
};

}  // namespace qm::siblings

#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "common/WideString.h"

/// What an INI file says: its sections and their lines, in the order of the file.
///
/// A line ends at CR, LF or both. Blanks (every character up to the space) around lines, names and
/// values do not count. A line that begins with ";" is a comment; one that begins with "[" opens a
/// section, whose name ends at the line's last "]", or at its end when it has none; any other is a
/// key, whose name ends at the first "=", or at the line's end, with an empty value then. Keys
/// before the first section are left out. No text is malformed.
///
/// Names are found without regard to case, of several that are equal the first. A section that
/// occurs twice is two sections, of which only the position finds the second.
///
/// Kept as one text and the places of names and values in it. Not for use by several threads at
/// once, since the order of many names is worked out when one is first looked for.
class CIniFile {
 public:
  /// A place in the text.
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

  /// Throws std::bad_alloc.
  explicit CIniFile(std::wstring text);

  /// The file at `path`; see ReadText for its failures.
  static std::shared_ptr<const CIniFile> Load(const CWideString& path);

  std::wstring_view TextAt(Span span) const noexcept {
    return {m_text.data() + span.begin, span.length};
  }

  /// By position from 0; null when there is none. Sections and keys live as long as the file.
  const Section* SectionAt(size_t position) const noexcept;
  const Key* KeyAt(const Section& section, size_t position) const noexcept;

  /// By name; null when there is none. Throws std::bad_alloc.
  const Section* FindSection(std::wstring_view name) const;
  const Key* FindKey(const Section& section, std::wstring_view name) const;

 private:
  using Order = std::vector<uint32_t>;

  void AddLine(std::wstring_view line);
  Span PlaceOf(std::wstring_view part) const noexcept;

  template <class Entry>
  Order OrderOf(const Entry* entries, size_t count) const;
  template <class Entry, class GetOrder>
  const Entry* Find(const Entry* entries, size_t count, std::wstring_view name,
                    GetOrder getOrder) const;

  std::wstring m_text;
  std::vector<Section> m_sections;
  std::vector<Key> m_keys;
  // Made for what has too many names to compare them all.
  mutable Order m_sectionOrder;
  mutable std::map<const Section*, Order> m_keyOrders;
};

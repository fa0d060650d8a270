#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>

namespace qm::image {

/// What a damaged file can still be asked for depends on where the damage lies.
enum class DamagedPart {
  NoDatabase,  ///< no installer database at all: a file of another kind, or an empty one
  Structure,   ///< the file as a whole: header, allocation, directory, strings, table definitions
  Table,       ///< one table, seen before its first row
  Row,         ///< one table, seen in one of its rows
  Summary      ///< the summary information
};

/// Thrown for bytes that would lead a reader astray. The text is one sentence for the person who
/// owns the file, without the file's name: "The allocation table names sector 812 of 540."
class Damage : public std::runtime_error {
 public:
  Damage(DamagedPart part, const std::string& sentence)
      : std::runtime_error(sentence), m_part(part) {}

  DamagedPart Part() const noexcept { return m_part; }

 private:
  DamagedPart m_part;
};

/// Something odd that does not keep the installer from reading a file.
struct Defect {
  enum class Grade {
    Harmless,   ///< a writer's habit, such as a last sector that is not padded
    Suspicious  ///< a part that nobody has asked for cannot be right
  };

  Grade grade;
  std::string sentence;
};

/// Bytes of a file as they can be shown in a sentence: in quotation marks, at most 80 characters of
/// ASCII, every other one replaced by "?".
std::string Quote(std::string_view bytes);

/// What a sentence begins with: "The directory", or 'Table "File"'. Made into text only when it is
/// needed. Refers to both parts.
class Subject {
 public:
  Subject(const char* text) noexcept : m_text(text) {}
  /// `kind` with a name of the file behind it, in quotation marks.
  Subject(std::string_view kind, std::string_view name) noexcept
      : m_text(kind), m_name(name), m_hasName(true) {}

  void AppendTo(std::string& text) const {
    text += m_text;
    if (m_hasName) {
      text += ' ' + Quote(m_name);
    }
  }

 private:
  std::string_view m_text;
  std::string_view m_name;
  bool m_hasName = false;
};

inline void AppendTo(std::string& text, std::string_view part) { text += part; }
inline void AppendTo(std::string& text, char part) { text += part; }

template <class Part>
std::enable_if_t<std::is_same_v<Part, Subject>> AppendTo(std::string& text, const Part& part) {
  part.AppendTo(text);
}

template <class Number>
std::enable_if_t<std::is_integral_v<Number>> AppendTo(std::string& text, Number part) {
  text += std::to_string(part);
}

/// Texts and numbers, one after the other.
template <class... Parts>
std::string Join(const Parts&... parts) {
  std::string text;
  (AppendTo(text, parts), ...);
  return text;
}

/// Throws Damage with a sentence of texts and numbers.
template <class... Parts>
[[noreturn]] void Refuse(DamagedPart part, const Parts&... parts) {
  throw Damage(part, Join(parts...));
}

}  // namespace qm::image

#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>

namespace qm::image {

/// Where a file is damaged, which determines what can still be read from it.
enum class DamagedPart {
  NoDatabase,  ///< not an installer database: a file of another kind, or an empty one
  Structure,   ///< the file as a whole: header, allocation, directory, strings, table definitions
  Table,       ///< one table, detected before its first row
  Row,         ///< one table, detected in one of its rows
  Summary      ///< the summary information
};

/// Thrown for bytes that a reader must not rely on. The text is one sentence for the owner of the
/// file, without the file's name: "The allocation table names sector 812 of 540."
class Damage : public std::runtime_error {
 public:
  Damage(DamagedPart part, const std::string& sentence)
      : std::runtime_error(sentence), m_part(part) {}

  DamagedPart Part() const noexcept { return m_part; }

 private:
  DamagedPart m_part;
};

/// An anomaly that does not prevent the installer from reading the file.
struct Defect {
  enum class Grade {
    Harmless,   ///< a writer's habit, such as an unpadded last sector
    Suspicious  ///< something cannot be right, in a part that was not needed
  };

  Grade grade;
  std::string sentence;
};

/// Quotes bytes of a file for a sentence: at most 80 of them, each one that is not printable ASCII
/// replaced by "?".
std::string Quote(std::string_view bytes);

/// The subject of a sentence: "The directory", or 'Table "File"'. It is formatted only when needed.
/// Refers to both parts, which must outlive it.
class Subject {
 public:
  Subject(const char* text) noexcept : m_text(text) {}
  /// `kind`, followed by a name from the file in quotation marks.
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

/// Concatenates texts and numbers.
template <class... Parts>
std::string Concatenate(const Parts&... parts) {
  std::string text;
  (AppendTo(text, parts), ...);
  return text;
}

/// Throws Damage with a sentence concatenated from texts and numbers.
template <class... Parts>
[[noreturn]] void ThrowDamage(DamagedPart part, const Parts&... parts) {
  throw Damage(part, Concatenate(parts...));
}

}  // namespace qm::image

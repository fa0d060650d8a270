#pragma once

#include <windows.h>

#include <cstddef>
#include <string>

/// Says on stderr how far a long run over the catalog has come, "reading 1200 of 2900 modules",
/// where stderr is a console, and takes that away at the end. One at a time.
class Progress {
 public:
  /// The catalog makes its list of modules.
  Progress();
  ~Progress() { Erase(); }
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  /// The list is there, and has so many modules.
  void SetTotal(size_t total) noexcept { m_total = total; }

  /// The next module is about to be read.
  void Step();

  /// Clears the line for something else that is printed to stderr.
  static void Erase() noexcept;

 private:
  void Show(const std::string& text);

  size_t m_total = 0;
  size_t m_begun = 0;
  bool m_isShown;
  ULONGLONG m_nextTime = 0;
};

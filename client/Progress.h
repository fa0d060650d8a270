#pragma once

#include <windows.h>

#include <cstddef>

/// Says on stderr how far a long run over the modules has come, "reading 1200 of 2900 modules",
/// where stderr is a console, and takes that away at the end. One at a time.
class Progress {
 public:
  explicit Progress(size_t total) noexcept;
  ~Progress() { Erase(); }
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  /// The next module is about to be read.
  void Step() noexcept;

  /// Clears the line for something else that is printed to stderr.
  static void Erase() noexcept;

 private:
  size_t m_total;
  size_t m_begun = 0;
  bool m_isShown;
  ULONGLONG m_nextTime;
};

#pragma once

#include <windows.h>

#include <cstddef>
#include <string>

namespace mmcat {

/// Shows on stderr how many modules of the catalog have been read, such as "reading 1200 of 2900
/// modules", if stderr is a terminal, and erases the line at the end. Only one object at a time.
class Progress {
 public:
  /// Shows that the list of modules is being read.
  Progress();
  ~Progress() { Erase(); }
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  /// Shows nothing from now on.
  static void Disable() noexcept;

  /// Sets the number of modules, once the list has been read.
  void SetTotal(size_t total) noexcept { m_total = total; }

  /// Counts a module that is about to be read.
  void CountModule() noexcept;

  /// Erases the line, so that something else can be printed to stderr.
  static void Erase() noexcept;

 private:
  void Show(const std::string& text);

  size_t m_total = 0;
  size_t m_begun = 0;
  bool m_isTerminal;
  ULONGLONG m_nextTime = 0;
};

}  // namespace mmcat

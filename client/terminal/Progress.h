#pragma once

#include <windows.h>

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

  /// Returns whether anything is shown.
  bool IsShown() const noexcept { return m_isTerminal; }

  /// Shows that module `number` of `total` is about to be read, at most ten times a second.
  void ShowModule(long number, long total) noexcept;

  /// Erases the line, so that something else can be printed to stderr.
  static void Erase() noexcept;

 private:
  void Show(const std::string& text);

  bool m_isTerminal;
  ULONGLONG m_nextTime = 0;
};

}  // namespace mmcat

#include "client/Help.h"

#include <algorithm>

#include "client/terminal/Page.h"
#include "client/terminal/TextWidth.h"
#include "client/terminal/WrapLines.h"

namespace mmcat {

namespace {

constexpr size_t kTextColumn = 26;  // where the texts of rows begin

size_t CountLines(const std::string& text) {
  return static_cast<size_t>(std::count(text.begin(), text.end(), '\n'));
}

/// Breaks a line into lines without indenting any of them.
std::string WrapFlush(const std::string& line, size_t width) {
  // WrapLines continues a line below the text after its first gap, so a dummy column before a gap
  // keeps all lines aligned.
  const std::string column = ".  ";
  const std::string wrapped =
      WrapLines(column + line + '\n', std::max(width, column.size()) + column.size());
  std::string flush;
  for (size_t start = 0; start < wrapped.size();) {
    const size_t end = wrapped.find('\n', start) + 1;
    flush += wrapped.substr(start + column.size(), end - start - column.size());
    start = end;
  }
  return flush;
}

/// Breaks a line into lines of about equal width, so that no word is left alone on the last one.
std::string WrapEvenly(const std::string& line, size_t width) {
  constexpr size_t kNarrowest = 20;
  const size_t lines = CountLines(WrapFlush(line, width));
  while (width > kNarrowest && CountLines(WrapFlush(line, width - 1)) == lines) {
    --width;
  }
  return WrapFlush(line, width);
}

}  // namespace

size_t HelpWidth() {
  constexpr size_t kInFiles = 79;
  constexpr size_t kWidest = 100;
  return std::min(PageOfTerminal().width.value_or(kInFiles), kWidest);
}

std::string FormatHelpRow(const std::string& name, const std::string& text) {
  const size_t page = HelpWidth();
  // On a narrow terminal the text takes a line of its own, less indented.
  const size_t column = page < 2 * kTextColumn ? 6 : kTextColumn;
  std::string row = "  " + name;
  if (MeasureWidth(row) + 2 > column) {
    row += '\n';
  } else {
    row.append(column - MeasureWidth(row), ' ');
  }
  const std::string wrapped = WrapEvenly(text, page - column);
  for (size_t start = 0; start < wrapped.size();) {
    const size_t end = wrapped.find('\n', start) + 1;
    if (row.back() == '\n') {
      row.append(column, ' ');
    }
    row += wrapped.substr(start, end - start);
    start = end;
  }
  return row;
}

std::string HelpFormatter::make_help(const CLI::App* app, std::string name,
                                     CLI::AppFormatMode mode) const {
  std::string groups = make_groups(app, mode);
  groups = CLI::detail::find_and_replace(groups, "\n\n\n", "\n\n");
  std::string help = make_usage(app, std::move(name)) + '\n' + app->get_description() +
                     ".\n\nExamples:\n" + m_examples + make_positionals(app) + groups +
                     make_subcommands(app, mode) + '\n' + make_footer(app);
  if (app->get_footer().empty()) {
    help.erase(help.find_last_not_of('\n') + 2);
  }
  return help;
}

std::string HelpFormatter::make_usage(const CLI::App* app, std::string name) const {
  return app->get_parent() ? CLI::Formatter::make_usage(app, std::move(name))
                           : get_label("Usage") + ": " + name + " COMMAND [ARGUMENTS] [OPTIONS]\n";
}

std::string HelpFormatter::make_option(const CLI::Option* option, bool isPositional) const {
  std::string names = make_option_name(option, isPositional);
  if (const size_t comma = names.find(",-"); comma != std::string::npos) {
    names.insert(comma + 1, " ");
  }
  return FormatHelpRow(names + make_option_opts(option), make_option_desc(option));
}

std::string HelpFormatter::make_option_opts(const CLI::Option* option) const {
  const bool isPositional = option->get_positional();
  const bool hasValue = option->get_type_size() != 0 && !isPositional;
  const bool isList = option->get_expected_max() == CLI::detail::expected_max_vector_size;
  return (hasValue ? ' ' + option->get_type_name() : "") + (isPositional && isList ? " ..." : "");
}

std::string HelpFormatter::make_footer(const CLI::App* app) const {
  const std::string footer = app->get_footer();
  std::string text;
  for (const std::string& line : CLI::detail::split(footer, '\n')) {
    text += WrapFlush(line, HelpWidth());
  }
  return text;
}

std::string HelpFormatter::make_subcommand(const CLI::App* command) const {
  return FormatHelpRow(command->get_display_name(true), command->get_description());
}

}  // namespace mmcat

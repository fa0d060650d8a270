#pragma once

#include <CLI/CLI.hpp>
#include <string>

namespace mmcat {

/// Lays out help: usage, description, examples, and tables of arguments, options and commands. No
/// line is wider than the page that help is printed on, unless a word is.
class HelpFormatter : public CLI::Formatter {
 public:
  /// `examples` are lines, each indented by two blanks and ended by a line break.
  explicit HelpFormatter(std::string examples) : m_examples(std::move(examples)) {}

  std::string make_help(const CLI::App* app, std::string name,
                        CLI::AppFormatMode mode) const override;

  std::string make_usage(const CLI::App* app, std::string name) const override;

  std::string make_option(const CLI::Option* option, bool isPositional) const override;

  /// Only the value of an option: its usage line says what is required, and its description whether
  /// it can be repeated.
  std::string make_option_opts(const CLI::Option* option) const override;

  std::string make_footer(const CLI::App* app) const override;

  std::string make_subcommand(const CLI::App* command) const override;

 private:
  std::string m_examples;
};

/// The width of help in columns: that of the terminal, at most 100, or 79 if stdout is not a
/// terminal.
size_t HelpWidth();

/// A row of a table in help: a name, and a text beside it or, if the name is too long, below it.
std::string FormatHelpRow(const std::string& name, const std::string& text);

}  // namespace mmcat

#pragma once

#include <CLI/CLI.hpp>
#include <string>

namespace mmcat {

/// Help that begins with examples.
class HelpFormatter : public CLI::Formatter {
 public:
  /// `examples` are lines, each indented by two blanks and ended by a line break.
  explicit HelpFormatter(std::string examples) : m_examples(std::move(examples)) {}

  std::string make_description(const CLI::App* app) const override;

  /// Only the value of an option: its usage line says what is required.
  std::string make_option_opts(const CLI::Option* option) const override;

 private:
  std::string m_examples;
};

}  // namespace mmcat

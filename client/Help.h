#pragma once

#include <CLI/CLI.hpp>
#include <string>

/// Help that begins with examples.
class HelpFormatter : public CLI::Formatter {
 public:
  /// `examples` is lines, indented by two blanks, each with its line break.
  explicit HelpFormatter(std::string examples) : m_examples(std::move(examples)) {}

  std::string make_description(const CLI::App* app) const override;

 private:
  std::string m_examples;
};

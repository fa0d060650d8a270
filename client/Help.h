#pragma once

#include <CLI/CLI.hpp>
#include <string>

/// Help that begins with examples: of the program, or of the command that is asked about.
class HelpFormatter : public CLI::Formatter {
 public:
  std::string make_description(const CLI::App* app) const override;
};

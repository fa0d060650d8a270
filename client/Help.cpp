#include "client/Help.h"

std::string HelpFormatter::make_description(const CLI::App* app) const {
  return "Examples:\n" + m_examples + '\n' + app->get_description() + ".\n";
}

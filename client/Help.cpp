#include "client/Help.h"

namespace mmcat {

std::string HelpFormatter::make_description(const CLI::App* app) const {
  return "Examples:\n" + m_examples + '\n' + app->get_description() + ".\n";
}

}  // namespace mmcat

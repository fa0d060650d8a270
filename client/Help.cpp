#include "client/Help.h"

namespace mmcat {

std::string HelpFormatter::make_description(const CLI::App* app) const {
  return "Examples:\n" + m_examples + '\n' + app->get_description() + ".\n";
}

std::string HelpFormatter::make_option_opts(const CLI::Option* option) const {
  const bool hasValue = option->get_type_size() != 0 && !option->get_positional();
  const bool isList = option->get_expected_max() == CLI::detail::expected_max_vector_size;
  return (hasValue ? ' ' + option->get_type_name() : "") + (isList ? " ..." : "");
}

}  // namespace mmcat

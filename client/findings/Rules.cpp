#include "client/findings/Rules.h"

namespace mmcat {

Rule FindRule(const std::string& code) { return {code, code}; }

}  // namespace mmcat

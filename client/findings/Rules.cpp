#include "client/findings/Rules.h"

namespace mmcat {

namespace {

constexpr struct {
  const char* code;
  const char* title;
  const char* help;
} kRules[] = {
#include "client/FindingRules.inc"
};

}  // namespace

Rule FindRule(const std::string& code) {
  for (const auto& rule : kRules) {
    if (code == rule.code) {
      return {rule.title, rule.help};
    }
  }
  return {code, code};
}

std::vector<std::string> RuleCodes() {
  std::vector<std::string> codes;
  for (const auto& rule : kRules) {
    codes.emplace_back(rule.code);
  }
  return codes;
}

}  // namespace mmcat

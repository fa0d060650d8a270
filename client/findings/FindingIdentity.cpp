#include "client/findings/FindingIdentity.h"

#include <algorithm>

#include "client/catalog/Hash.h"

namespace mmcat {

namespace {

std::string ChooseKey(const FindingFacts& finding) {
  if (!finding.key.empty()) {
    return finding.key;
  }
  if (finding.required) {
    return finding.required->key;
  }
  return finding.folder.empty() || finding.file.empty() ? finding.folder + finding.file
                                                        : finding.folder + '/' + finding.file;
}

}  // namespace

FindingIdentity Identify(const FindingFacts& finding) {
  FindingIdentity identity{finding.code, finding.moduleKeys, finding.table, ChooseKey(finding)};
  for (std::string& module : identity.modules) {
    module.erase(0, module.find_last_of("\\/") + 1);  // the folder of a path
  }
  std::sort(identity.modules.begin(), identity.modules.end());
  return identity;
}

std::string FormatIdentity(const FindingIdentity& identity) {
  std::string text = identity.code;
  const char* separator = ": ";
  for (const std::string& module : identity.modules) {
    text += separator + module;
    separator = ", ";
  }
  for (const std::string& part : {identity.table, identity.key}) {
    text += part.empty() ? "" : "; " + part;
  }
  return text;
}

std::string MakeFingerprint(const FindingIdentity& identity, int occurrence) {
  std::string text = identity.code;
  for (const std::string& module : identity.modules) {
    text += '\n' + module;
  }
  // An empty line ends the modules.
  text += "\n\n" + identity.table + '\n' + identity.key;
  return HashBytes(occurrence == 1 ? text : text + '\n' + std::to_string(occurrence));
}

}  // namespace mmcat

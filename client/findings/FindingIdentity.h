#pragma once

#include <string>
#include <tuple>
#include <vector>

#include "client/catalog/ModuleSet.h"

namespace mmcat {

/// Identifies a finding across runs, whatever its position, its text and the folders of its
/// modules. Several findings of a run can have the same identity. Texts are UTF-8.
struct FindingIdentity {
  std::string code;
  std::vector<std::string> modules;  ///< keys, sorted; the file name of a module without a key
  std::string table;
  std::string key;  ///< of the row; without one, the required module, or else the file

  bool operator<(const FindingIdentity& other) const {
    return std::tie(code, modules, table, key) <
           std::tie(other.code, other.modules, other.table, other.key);
  }
  bool operator==(const FindingIdentity& other) const {
    return !(*this < other) && !(other < *this);
  }
};

FindingIdentity Identify(const FindingFacts& finding);

/// An identity on one line: the code, the modules, the table and the key.
std::string FormatIdentity(const FindingIdentity& identity);

/// A hash of an identity, as hexadecimal digits. `occurrence` counts the findings of a run that
/// have the same identity, from 1, and keeps their fingerprints apart.
std::string MakeFingerprint(const FindingIdentity& identity, int occurrence);

}  // namespace mmcat

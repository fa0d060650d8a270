#pragma once

#include <string>

namespace qm::merge {

/// An entry of an index table that names a module.
struct IndexEntry {
  std::string table;  ///< "modules.ini"
  std::string name;   ///< of the entry: a key or a file
  std::string moduleKey;
};

}  // namespace qm::merge

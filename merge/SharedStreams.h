#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace qm::merge {

/// Finds out which data of modules has to be compared: what several of them have in the same row
/// and in the same size. Most data is in one module only and need not be read.
class SharedStreams {
 public:
  /// Begins a module, which its path names. A module may be begun again.
  void BeginModule(std::string_view path);

  /// Notes that the module has data with an identity: a hash of table, key, column and size.
  /// Returns whether another module has it too, so that it must be read.
  bool Note(std::uint64_t identity);

  /// Returns the paths of the modules with data that another one has too, which was not yet known
  /// when they were read.
  std::vector<std::string> TakeUnread();

 private:
  struct Data {
    std::size_t owner;  ///< the first module that has it, a position in m_paths
    bool isShared;
  };

  std::vector<std::string> m_paths;
  std::vector<std::size_t> m_unread;
  std::unordered_map<std::uint64_t, Data> m_data;
};

}  // namespace qm::merge

#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace qm::merge {

/// Determines which binary data of modules must be compared: data that several modules have in the
/// same row and with the same size. Most data is in one module only and need not be read.
class SharedStreams {
 public:
  /// Begins the module at `path`, to which calls of Note refer. A module may be begun again.
  void BeginModule(std::string_view path);

  /// Notes that the module has data with an identity: a hash of table, key, column and size.
  /// Returns whether another module has it too, so that it must be read.
  bool Note(std::uint64_t identity);

  /// Returns the paths of modules that must be read again, sorted: another module has data of
  /// theirs too, which was not known when they were read.
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

#include "merge/SharedStreams.h"

#include <algorithm>
#include <utility>

namespace qm::merge {

void SharedStreams::BeginModule(std::string_view path) { m_paths.emplace_back(path); }

bool SharedStreams::Note(std::uint64_t identity) {
  const std::size_t module = m_paths.size() - 1;
  const auto [found, isNew] = m_data.try_emplace(identity, Data{module, false});
  Data& data = found->second;
  if (!isNew && !data.isShared && m_paths[data.owner] != m_paths[module]) {
    data.isShared = true;
    m_unread.push_back(data.owner);
  }
  return data.isShared;
}

std::vector<std::string> SharedStreams::TakeUnread() {
  std::vector<std::string> paths;
  for (const std::size_t module : std::exchange(m_unread, {})) {
    paths.push_back(m_paths[module]);
  }
  std::sort(paths.begin(), paths.end());
  paths.erase(std::unique(paths.begin(), paths.end()), paths.end());
  return paths;
}

}  // namespace qm::merge

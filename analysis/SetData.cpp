#include "analysis/SetData.h"

#include "text/Utf.h"
#include "traits/ProjectTraitsManager.h"
#include "traits/RootSpelling.h"

namespace qm::analysis {

const merge::ModuleUsers& SetData::Users() const {
  if (!m_users) {
    m_users = std::make_unique<const merge::ModuleUsers>(m_index);
  }
  return *m_users;
}

merge::TargetFolder SetData::ResolveFolder(size_t module, std::string_view directory) const {
  std::unique_ptr<const merge::TargetFolders>& folders = m_folders[module];
  if (!folders) {
    folders = std::make_unique<const merge::TargetFolders>(ModuleAt(module));
  }
  return folders->Resolve(directory);
}

std::string SetData::SpellFolder(const merge::TargetFolder& folder) {
  const int type = traits::GetActiveProjectType();
  const bool isKnown = type == static_cast<int>(traits::ProjectType::Installer) ||
                       type == static_cast<int>(traits::ProjectType::Script);
  if (!isKnown) {
    return merge::FormatTargetFolder(folder);
  }
  const traits::ProjectTraits& traits =
      traits::CProjectTraitsManager::Instance().ForType(static_cast<traits::ProjectType>(type));
  return merge::FormatTargetFolder(folder, [&](std::string_view root) {
    return text::ToUtf8(traits::SpellRoot(traits, text::ToWide(root)));
  });
}

}  // namespace qm::analysis

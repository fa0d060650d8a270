#include "traits/RootSpelling.h"

#include <algorithm>
#include <iterator>

namespace qm::traits {

namespace {

/// The folders for which every kind of project has a reference of its own.
constexpr struct {
  const wchar_t* property;
  common::WideString (ProjectTraits::*reference)() const;
} kReferences[] = {
    {L"SystemFolder", &ProjectTraits::SystemFolderReference},
    {L"WindowsFolder", &ProjectTraits::WindowsFolderReference},
    {L"ProgramFilesFolder", &ProjectTraits::ProgramFilesReference},
    {L"CommonFilesFolder", &ProjectTraits::CommonFilesReference},
    {L"StartMenuFolder", &ProjectTraits::StartMenuFolderReference},
    {L"SendToFolder", &ProjectTraits::SendToFolderReference},
    {L"ProgramMenuFolder", &ProjectTraits::ProgramMenuFolderReference},
    {L"StartupFolder", &ProjectTraits::StartupFolderReference},
    {L"DesktopFolder", &ProjectTraits::DesktopFolderReference},
};

/// The other folders that script-based projects know, under names of their own.
constexpr struct {
  const wchar_t* property;
  const wchar_t* name;
} kScriptNames[] = {
    {L"System64Folder", L"WINSYSDIR64"},
    {L"ProgramFiles64Folder", L"PROGRAMFILES64"},
    {L"CommonFiles64Folder", L"COMMONFILES64"},
    {L"FontsFolder", L"FOLDER_FONTS"},
};

}  // namespace

common::WideString SpellRoot(const ProjectTraits& traits, const common::WideString& property) {
  const auto isOfProperty = [&](const auto& entry) { return property == entry.property; };
  const auto reference = std::find_if(std::begin(kReferences), std::end(kReferences), isOfProperty);
  if (reference != std::end(kReferences)) {
    return (traits.*reference->reference)();
  }
  common::WideString name = property;
  if (!traits.PredefinedFolderMatch(name)) {
    const auto alias = std::find_if(std::begin(kScriptNames), std::end(kScriptNames), isOfProperty);
    if (alias == std::end(kScriptNames) || !traits.PredefinedFolderMatch(alias->name)) {
      return {};
    }
    name = alias->name;
  }
  return traits.OpenDelimiter() + name + traits.CloseDelimiter();
}

}  // namespace qm::traits

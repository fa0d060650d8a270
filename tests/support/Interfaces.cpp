#include "tests/support/Interfaces.h"

#include <sstream>

namespace {

constexpr wchar_t kCollection[] = L"Item! Count# _NewEnum! Enumerator!";

}  // namespace

const InterfaceFacts kInterfaces[22] = {
    {L"IMMFile", nullptr, L"Directory Key FileSize# FileName Version Language Sequence#"},
    {L"IMMDependency", nullptr, L"Key ModuleID Version Language#"},
    {L"IMMExclusion", nullptr, L"Key ModuleID MinVersion MaxVersion Language"},
    {L"IMMCustomAction", nullptr, L"Name"},
    {L"IMMDialog", nullptr, L"Name"},
    {L"IMMGalleryDownloadFileCaskel", nullptr,
     L"Location MediaLocation InternetLocation FileSize# CheckSum"},
    {L"IMMFiles", nullptr, kCollection},
    {L"IMMDependencies", nullptr, kCollection},
    {L"IMMExclusions", nullptr, kCollection},
    {L"IMMCustomActions", nullptr, kCollection},
    {L"IMMDialogs", nullptr, kCollection},
    {L"IMMGalleryDownloadFilesCaskel", nullptr, kCollection},
    {L"IMergeModules", nullptr, kCollection},
    {L"IMMSources", nullptr, kCollection},
    {L"IMergeModule", nullptr,
     L"Dialogs=IMMDialog CustomActions=IMMCustomAction PackageCode ModuleID Key Path Comments "
     L"Subject Author Language# Version Dependencies=IMMDependency Exclusions=IMMExclusion "
     L"Files=IMMFile DisplayName Open!"},
    {L"IMergeModule2", L"IMergeModule",
     L"Present? NeedsDownload? DownloadFiles=IMMGalleryDownloadFileCaskel LocalPath"},
    {L"IMergeModuleTavik", L"IMergeModule2", L"HasOrigin? Origin"},
    {L"IMMSource", nullptr, L"Entry Folder DisplayName SecondPass? MergeModules=IMergeModuleTavik"},
    {L"IMMCatalog", nullptr,
     L"Reserved1! Reserved2! Refresh! Sources=IMMSource MergeModules=IMergeModuleTavik "
     L"FindModules! Reserved7! Reserved8! Reserved9!"},
    {L"IMMCatalogVelmora", L"IMMCatalog",
     L"CatalogQuery! FindModule! GetModuleForFile! GetModuleDisplayName!"},
    {L"IMMCatalogCaskel", L"IMMCatalogVelmora", L"SupportsProject! Option!"},
    {L"IMMCatalogManagerVelmora", nullptr, L"GetCatalog!"},
};

std::vector<Member> MembersOf(const std::wstring& interfaceName) {
  std::vector<Member> members;
  for (const InterfaceFacts& facts : kInterfaces) {
    if (facts.name == interfaceName) {
      if (facts.base) {
        members = MembersOf(facts.base);
      }
      std::wistringstream words(facts.members);
      for (std::wstring word; words >> word;) {
        const size_t end = word.find_first_of(L"#?!=");
        const wchar_t mark = end == std::wstring::npos ? L'\0' : word[end];
        members.push_back({word.substr(0, end), mark == L'#'   ? VARTYPE{VT_I4}
                                                : mark == L'?' ? VARTYPE{VT_BOOL}
                                                : mark == L'!' ? VARTYPE{VT_EMPTY}
                                                : mark == L'=' ? VARTYPE{VT_DISPATCH}
                                                               : VARTYPE{VT_BSTR}});
        members.back().items = mark == L'=' ? word.substr(end + 1) : L"";
      }
    }
  }
  return members;
}

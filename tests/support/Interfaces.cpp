#include "tests/support/Interfaces.h"

#include <sstream>

namespace qm::tests {

namespace {

/// An interface as it is documented for clients.
struct InterfaceFacts {
  const wchar_t* name;
  const wchar_t* base;  ///< null for IDispatch
  /// Its own members in slot order. "Name" is a text, "Name#" a number, "Name?" a boolean,
  /// "Name!" something else, and "Name=IItem" a collection with the interface of its items.
  const wchar_t* members;
};

const InterfaceFacts kInterfaces[] = {
    {L"IMMFile", nullptr, L"Directory Key FileSize# FileName Version Language Sequence#"},
    {L"IMMDependency", nullptr, L"Key ModuleID Version Language#"},
    {L"IMMExclusion", nullptr, L"Key ModuleID MinVersion MaxVersion Language"},
    {L"IMMCustomAction", nullptr, L"Name"},
    {L"IMMDialog", nullptr, L"Name"},
    {L"IMMGalleryDownloadFileCaskel", nullptr,
     L"Location MediaLocation InternetLocation FileSize# CheckSum"},
    {L"IMergeModule", nullptr,
     L"Dialogs=IMMDialog CustomActions=IMMCustomAction PackageCode ModuleID Key Path Comments "
     L"Subject Author Language# Version Dependencies=IMMDependency Exclusions=IMMExclusion "
     L"Files=IMMFile DisplayName Open!"},
    {L"IMergeModule2", L"IMergeModule",
     L"Present? NeedsDownload? DownloadFiles=IMMGalleryDownloadFileCaskel LocalPath"},
    {L"IMergeModuleTavik", L"IMergeModule2", L"HasOrigin? Origin"},
};

}  // namespace

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

}  // namespace qm::tests

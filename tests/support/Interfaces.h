#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace qm::tests {

struct Member {
  std::wstring name;
  VARTYPE type;          ///< VT_DISPATCH for a collection, VT_EMPTY unless a readable property
  std::wstring items{};  ///< interface of the items of a collection
};

/// The members of an interface in slot order, those of its bases first.
std::vector<Member> MembersOf(const std::wstring& interfaceName);

}  // namespace qm::tests

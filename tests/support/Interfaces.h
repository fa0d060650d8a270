#pragma once

#include <windows.h>

#include <string>
#include <vector>

/// An interface as it is documented for clients.
struct InterfaceFacts {
  const wchar_t* name;
  const wchar_t* base;  ///< null for IDispatch
  /// Its own members in slot order. "Name" is a text, "Name#" a number, "Name?" a boolean,
  /// "Name!" something else, and "Name=IItem" a collection with the interface of its items.
  const wchar_t* members;
};

extern const InterfaceFacts kInterfaces[22];

struct Member {
  std::wstring name;
  VARTYPE type;  ///< VT_DISPATCH for a collection, VT_EMPTY for what is no readable property
  std::wstring items{};  ///< interface of the items of a collection
};

/// The members of an interface in slot order, those of its bases first.
std::vector<Member> MembersOf(const std::wstring& interfaceName);

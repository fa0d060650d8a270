#pragma once

#include <windows.h>

#include <vector>

#include "common/WideString.h"

namespace qm::com {

/// An argument of a script that is a text or a list of texts.
struct TextListArgument {
  bool isList;
  std::vector<common::WideString> texts;  ///< exactly one unless it is a list
};

/// Parses such an argument. A list is a one-dimensional SAFEARRAY of VARIANTs or BSTRs, or an array
/// object of the script. Its elements, or an argument that is not a list, are converted to texts.
/// Raises E_INVALIDARG with the description `complaint` if the argument is something else. Throws
/// std::bad_alloc.
TextListArgument ParseTextList(const VARIANT& argument, const wchar_t* complaint);

}  // namespace qm::com

#pragma once

#include <vector>

#include "common/WideString.h"

/// The non-empty entries of a list that is separated by ",", without blanks around them.
std::vector<CWideString> SplitCommaList(std::wstring_view list);

/// `text` with its environment variables filled in ("%ProgramFiles%\Modules").
CWideString ExpandEnvironmentText(const CWideString& text);

/// The folders of a search path: its entries with their environment variables filled in. One that
/// comes to nothing is left out: it would stand for the current folder.
std::vector<CWideString> ExpandSearchPath(std::wstring_view path);

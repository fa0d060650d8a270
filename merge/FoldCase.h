#pragma once

#include <string>

/// UTF-8 texts that differ in case alone are equal after this.
std::string FoldCase(const std::string& text);

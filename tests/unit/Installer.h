#pragma once

#include <windows.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "msidb/MsiHandle.h"

// The installer's functions as the test program links them: each notes its call and passes it on to
// msi.dll, or gives an answer that a test has set.
namespace installer {

/// Sets the result of a function, by the name under which it is linked ("MsiViewFetch"), for every
/// call after the first `passedOn`.
void Answer(const char* function, UINT result, int passedOn = 0);

/// Forgets all answers and calls.
void Reset();

/// Names of the functions that were called since Reset.
const std::vector<std::string>& Calls();
int CallsOf(const char* function);

/// A function of msi.dll itself.
void* Find(const char* function);
template <class Function>
Function* Find(const char* function) {
  return reinterpret_cast<Function*>(Find(function));
}

/// Closes the handles that this thread left open; gives their number.
UINT CloseAllHandles();

}  // namespace installer

#pragma once

#include <windows.h>
#include <gtest/gtest.h>

#include "com/error/ComException.h"
#include "common/WideString.h"
#include "tests/support/ErrorObject.h"

namespace qm::tests {

inline void PrintTo(const common::WideString& text, std::ostream* out) {
  *out << ::testing::PrintToString(std::wstring(std::wstring_view(text)));
}

/// The system's text for a failure, as the server shows it.
common::WideString SystemText(HRESULT hr);

/// Clears the error object of this thread. Returns false if there was none.
bool TakeErrorObject();

/// The failure that `work` raises; its code is S_OK if `work` succeeds.
template <class Work>
com_exception FailureOf(Work work) {
  try {
    work();
  } catch (com::CComException* exception) {
    com_exception failure = exception->Failure();
    exception->Delete();
    return failure;
  }
  return com_exception(S_OK, L"no failure was raised");
}

/// The C++ heap of the test program: every operator new overwrites the thread's last-error code, as
/// the system's allocator may.
namespace heap {

constexpr DWORD kLastError = 0x00A110C8;  ///< what an allocation leaves

/// The number of blocks that are allocated now.
long Live() noexcept;

/// Makes the `position`th allocation from now fail; 0 makes none fail. Returns whether the fault
/// that was set before has occurred.
bool SetFault(long position) noexcept;

/// Calls `work` with allocation 1, 2, 3, ... failing until none is left to fail. Each time it must
/// return E_OUTOFMEMORY and leave no block behind; `check` checks everything else.
template <class Work, class Check>
void SweepFaults(Work work, Check check) {
  for (long position = 1;; ++position) {
    SCOPED_TRACE(position);
    const long blocks = heap::Live();
    heap::SetFault(position);
    const HRESULT hr = work();
    if (!heap::SetFault(0)) {
      EXPECT_EQ(S_OK, hr);
      EXPECT_LT(1, position) << "nothing was allocated";
      return;
    }
    EXPECT_EQ(blocks, heap::Live());
    EXPECT_EQ(E_OUTOFMEMORY, hr);
    check();
  }
}

}  // namespace heap

}  // namespace qm::tests

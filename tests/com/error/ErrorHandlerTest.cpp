#include "com/error/ErrorHandler.h"

#include <functional>
#include <stdexcept>
#include <string>
#include <tuple>
#include <vector>

#include "com/error/Raise.h"
#include "com/error/win32_exception.h"
#include "tests/support/Testing.h"

namespace qm::tests {

namespace {

// A class that is registered wherever the installer is.
constexpr wchar_t kProgId[] = L"WindowsInstaller.Installer";
constexpr GUID kClsid = {0x000C1090, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};

constexpr GUID kIid = {0x12345678, 1, 2, {3, 4, 5, 6, 7, 8, 9, 10}};

std::vector<std::string> g_traces;

LONG CALLBACK ObserveTrace(EXCEPTION_POINTERS* pointers) {
  constexpr DWORD debugPrint = 0x40010006;
  const EXCEPTION_RECORD& record = *pointers->ExceptionRecord;
  if (record.ExceptionCode == debugPrint) {
    g_traces.emplace_back(reinterpret_cast<const char*>(record.ExceptionInformation[1]));
  }
  return EXCEPTION_CONTINUE_SEARCH;
}

/// A class that reports under the class identifier above.
struct Reporter : com::CErrorHandler<&kClsid> {
  using CErrorHandler::MethodBoundary;
};

TEST(ErrorHandlerTest, ReportTracesAndMakesTheErrorObject) {
  com_exception failure(E_FAIL, L"It is broken.");
  failure.iid = kIid;
  void* const observer = ::AddVectoredExceptionHandler(TRUE, &ObserveTrace);
  EXPECT_EQ(E_FAIL, Reporter().Report(failure, nullptr));
  ::RemoveVectoredExceptionHandler(observer);
  EXPECT_EQ(g_traces, (std::vector<std::string>{"\nException caught: ", "-2147467259", " = ",
                                                "It is broken."}));
  const com_exception reported(E_ABORT);
  EXPECT_EQ(reported.description, L"It is broken.");
  EXPECT_EQ(reported.source, kProgId);
  EXPECT_TRUE(reported.iid == kIid);

  failure.hr = S_OK;
  EXPECT_EQ(DISP_E_EXCEPTION, Reporter().Report(failure, L"while testing"));
  EXPECT_EQ(com_exception(E_ABORT).description, L"It is broken.\n     > while testing");
}

class OtherException : public com::CException {
 public:
  BOOL GetErrorMessage(wchar_t*, UINT, UINT*) const override { return FALSE; }
};

TEST(ErrorHandlerTest, EveryExceptionBecomesAnHResult) {
  const com_exception failure(E_ABORT, L"It is broken.");
  const auto throwCode = [](DWORD code) {
    ::SetLastError(code);
    throw win32_exception();
  };
  const std::tuple<const char*, HRESULT, const wchar_t*, std::function<void()>> cases[] = {
      {"com_exception", E_ABORT, L"It is broken.", [&] { throw failure; }},
      {"CComException*", E_ABORT, L"It is broken.", [&] { com::Raise(failure); }},
      {"_CComException*", E_ABORT, L"It is broken.",
       [&] { throw new com::_CComException<int>(failure); }},
      {"Win32", E_ACCESSDENIED, nullptr, [&] { throwCode(ERROR_ACCESS_DENIED); }},
      {"Win32 success", DISP_E_EXCEPTION, L"", [&] { throwCode(ERROR_SUCCESS); }},
      {"bad_alloc", E_OUTOFMEMORY, nullptr, [] { throw std::bad_alloc(); }},
      {"CMemoryException*", E_OUTOFMEMORY, nullptr, [] { com::ThrowMemoryException(); }},
      {"CException*", E_UNEXPECTED, nullptr, [] { throw new OtherException; }},
      {"std::exception", E_UNEXPECTED, nullptr, [] { throw std::runtime_error("x"); }},
      {"int", E_UNEXPECTED, nullptr, [] { throw 1; }},
  };
  for (const auto& [what, expected, description, raise] : cases) {
    SCOPED_TRACE(what);
    const long blocks = heap::Live();
    const HRESULT hr = Reporter::MethodBoundary([&work = raise]() -> HRESULT {
      LeaveErrorObject(L"left by a component whose failure did not matter");
      work();
      return S_OK;
    });
    EXPECT_EQ(blocks, heap::Live());
    EXPECT_EQ(expected, hr);
    if (expected == E_OUTOFMEMORY) {
      EXPECT_FALSE(TakeErrorObject());
    } else {
      EXPECT_EQ(com_exception(S_OK).description,
                description ? common::WideString(description) : SystemText(expected));
    }
  }
  for (const HRESULT hr : {S_OK, S_FALSE, E_INVALIDARG}) {
    LeaveErrorObject(L"from before the call");
    EXPECT_EQ(hr, Reporter::MethodBoundary([&] { return hr; }));
    EXPECT_FALSE(TakeErrorObject());
  }
}

}  // namespace

}  // namespace qm::tests

#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <tuple>
#include <vector>

#include "com/error/ErrorHandler.h"
#include "com/error/Raise.h"
#include "com/error/win32_exception.h"
#include "tests/support/Testing.h"

namespace {

// A class that is registered wherever the installer is.
constexpr wchar_t kProgId[] = L"WindowsInstaller.Installer";
constexpr GUID kClsid = {0x000C1090, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};

constexpr GUID kIid = {0x12345678, 1, 2, {3, 4, 5, 6, 7, 8, 9, 10}};

TEST(ComException, CapturesAndConsumesTheErrorObject) {
  const std::pair<const wchar_t*, GUID> cases[] = {
      {kProgId, kClsid}, {L"No.Such.ProgID", GUID_NULL}, {L"", GUID_NULL}};
  for (const auto& [source, clsid] : cases) {
    LeaveErrorObject(L"It is broken.", source, kIid);
    const com_exception failure(E_FAIL);
    EXPECT_EQ(E_FAIL, failure.hr);
    EXPECT_EQ(failure.description, L"It is broken.");
    EXPECT_EQ(failure.source, source);
    EXPECT_TRUE(failure.iid == kIid);
    EXPECT_TRUE(failure.clsid == clsid) << failure.source.c_str();
    EXPECT_FALSE(TakeErrorObject());
  }
}

TEST(ComException, WithoutErrorObjectTakesTheSystemText) {
  const com_exception known(E_ACCESSDENIED);
  EXPECT_NE(known.description, L"Unknown error");
  EXPECT_EQ(known.description, SystemText(E_ACCESSDENIED));
  EXPECT_EQ(known.source, L"");
  EXPECT_TRUE(known.iid == GUID_NULL && known.clsid == GUID_NULL);
  EXPECT_EQ(com_exception(static_cast<HRESULT>(0xA0FF1234)).description, L"Unknown error");
  LeaveErrorObject(L"other");
  EXPECT_EQ(com_exception(E_FAIL, L"mine").description, L"mine");
  EXPECT_TRUE(TakeErrorObject());
}

template <class Base>
bool RaisedIsCaughtAs() {
  try {
    RaiseHResult(E_FAIL);
  } catch (Base* caught) {
    static_cast<CComException*>(caught)->Delete();
    return true;
  } catch (...) {
    return false;
  }
}

TEST(Raise, ThrowsAnObjectThatEveryBaseCatches) {
  const long blocks = heap::Live();
  EXPECT_TRUE(RaisedIsCaughtAs<CComException>());
  EXPECT_TRUE(RaisedIsCaughtAs<_CComException<int>>());
  EXPECT_TRUE(RaisedIsCaughtAs<CException>());
  EXPECT_TRUE(RaisedIsCaughtAs<CObject>());
  EXPECT_TRUE(RaisedIsCaughtAs<void>());
  EXPECT_EQ(blocks, heap::Live());
  EXPECT_NO_THROW(RaiseIfFailed(S_FALSE));
}

TEST(Raise, GetErrorMessageCutsToTheBuffer) {
  const std::pair<UINT, const wchar_t*> cases[] = {{0, L"####"}, {1, L""},     {3, L"ab"},
                                                   {4, L"abc"},  {5, L"abcd"}, {9, L"abcd"}};
  const CComException exception(com_exception(E_FAIL, L"abcd"));
  const CException& base = exception;
  for (const auto& [size, text] : cases) {
    wchar_t buffer[10] = L"####";
    UINT help = 77;
    EXPECT_EQ(TRUE, base.GetErrorMessage(buffer, size, &help)) << size;
    EXPECT_STREQ(text, buffer);
    EXPECT_EQ(77U, help);
  }
}

TEST(Win32Exception, TakesTheCodeBeforeAnythingCanChangeIt) {
  ::SetLastError(ERROR_SHARING_VIOLATION);
  EXPECT_EQ(DWORD{ERROR_SHARING_VIOLATION}, qm::win32_exception().code());
  ::SetLastError(ERROR_PATH_NOT_FOUND);
  try {
    RaiseLastError();
  } catch (const qm::win32_exception& failure) {
    EXPECT_EQ(DWORD{ERROR_PATH_NOT_FOUND}, failure.code());
  }
}

TEST(Win32Exception, CopiesShareOneText) {
  const long blocks = heap::Live();
  {
    ::SetLastError(ERROR_ACCESS_DENIED);
    std::optional<qm::win32_exception> first(std::in_place);
    const qm::win32_exception before(*first);
    const wchar_t* const text = first->message();
    const qm::win32_exception after(*first);
    qm::win32_exception assigned;
    assigned = after;
    first.reset();
    const std::string narrow(after.what());
    EXPECT_EQ(SystemText(E_ACCESSDENIED), std::wstring(narrow.begin(), narrow.end()));
    EXPECT_EQ(SystemText(E_ACCESSDENIED), text);
    for (const auto* copy : {&before, &after, &std::as_const(assigned)}) {
      EXPECT_EQ(text, copy->message());
      EXPECT_EQ(after.what(), copy->what());
    }
  }
  EXPECT_EQ(blocks, heap::Live());
}

TEST(Win32Exception, HResultAndTextOfCodes) {
  const std::pair<DWORD, DWORD> codes[] = {{0, 0}, {0x12345, 0x80072345}, {0xA0FF1234, 0xA0FF1234}};
  for (const auto& [code, hr] : codes) {
    ::SetLastError(code);
    const qm::win32_exception failure;
    EXPECT_EQ(hr, static_cast<DWORD>(failure.hresult()));
    EXPECT_STREQ(L"", failure.message()) << code;  // no text is known
    EXPECT_STREQ("", failure.what());
  }
}

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
struct CReporter : CErrorHandler<&kClsid> {
  using CErrorHandler::MethodBoundary;
};

TEST(ErrorHandler, ReportTracesAndMakesTheErrorObject) {
  com_exception failure(E_FAIL, L"It is broken.");
  failure.iid = kIid;
  void* const observer = ::AddVectoredExceptionHandler(TRUE, &ObserveTrace);
  EXPECT_EQ(E_FAIL, CReporter().Report(failure, nullptr));
  ::RemoveVectoredExceptionHandler(observer);
  EXPECT_EQ(g_traces, (std::vector<std::string>{"\nException caught: ", "-2147467259", " = ",
                                                "It is broken."}));
  const com_exception reported(E_ABORT);
  EXPECT_EQ(reported.description, L"It is broken.");
  EXPECT_EQ(reported.source, kProgId);
  EXPECT_TRUE(reported.iid == kIid);

  failure.hr = S_OK;
  EXPECT_EQ(DISP_E_EXCEPTION, CReporter().Report(failure, L"while testing"));
  EXPECT_EQ(com_exception(E_ABORT).description, L"It is broken.\n     > while testing");
}

class COtherException : public CException {
 public:
  BOOL GetErrorMessage(wchar_t*, UINT, UINT*) const override { return FALSE; }
};

TEST(ErrorHandler, BoundaryAnswersForEverythingThatIsThrown) {
  const com_exception failure(E_ABORT, L"It is broken.");
  const auto throwCode = [](DWORD code) {
    ::SetLastError(code);
    throw qm::win32_exception();
  };
  const std::tuple<const char*, HRESULT, const wchar_t*, std::function<void()>> cases[] = {
      {"com_exception", E_ABORT, L"It is broken.", [&] { throw failure; }},
      {"CComException*", E_ABORT, L"It is broken.", [&] { Raise(failure); }},
      {"_CComException*", E_ABORT, L"It is broken.",
       [&] { throw new _CComException<int>(failure); }},
      {"Win32", E_ACCESSDENIED, nullptr, [&] { throwCode(ERROR_ACCESS_DENIED); }},
      {"Win32 success", DISP_E_EXCEPTION, L"", [&] { throwCode(ERROR_SUCCESS); }},
      {"bad_alloc", E_OUTOFMEMORY, nullptr, [] { throw std::bad_alloc(); }},
      {"CMemoryException*", E_OUTOFMEMORY, nullptr, [] { ThrowMemoryException(); }},
      {"CException*", E_UNEXPECTED, nullptr, [] { throw new COtherException; }},
      {"std::exception", E_UNEXPECTED, nullptr, [] { throw std::runtime_error("x"); }},
      {"int", E_UNEXPECTED, nullptr, [] { throw 1; }},
  };
  for (const auto& [what, expected, description, raise] : cases) {
    SCOPED_TRACE(what);
    const long blocks = heap::Live();
    const HRESULT hr = CReporter::MethodBoundary([&work = raise]() -> HRESULT {
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
                description ? CWideString(description) : SystemText(expected));
    }
  }
  for (const HRESULT hr : {S_OK, S_FALSE, E_INVALIDARG}) {
    LeaveErrorObject(L"from before the call");
    EXPECT_EQ(hr, CReporter::MethodBoundary([&] { return hr; }));
    EXPECT_FALSE(TakeErrorObject());
  }
}

}  // namespace

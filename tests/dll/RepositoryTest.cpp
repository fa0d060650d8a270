#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "common/Bstr.h"
#include "idl/siblings.h"
#include "tests/support/Answers.h"
#include "tests/support/ComDll.h"
#include "tests/support/TestFolder.h"

namespace qm::tests {

namespace {

using namespace std::literals;
using testing::StartsWith;

std::string Document(const std::string& content) {
  return "<Repositories>" + content + "</Repositories>";
}

std::string Repository(const std::string& value) {
  return "<Repository><Property Name='A' Value='" + value + "'/></Repository>";
}

std::string Utf16(const std::string& text) {
  const std::u16string units = u'\uFEFF' + std::u16string(text.begin(), text.end());
  return {reinterpret_cast<const char*>(units.data()), units.size() * sizeof(char16_t)};
}

class RepositoryTest : public ::testing::Test {
 protected:
  RepositoryTest() { SetPath(m_path); }

  void SetPath(const std::wstring& path) {
    EXPECT_EQ(S_OK, m_manager->put_Path(Variant(path.c_str()).bstrVal));
  }

  /// Writes the file, last written `time` days after a fixed one.
  void Write(const std::string& bytes, long time = 0) {
    PutFile(m_path, bytes);
    const FILETIME written{0, static_cast<DWORD>(0x1D50000 + time * 201)};
    HANDLE file =
        ::CreateFileW(m_path.c_str(), FILE_WRITE_ATTRIBUTES, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    EXPECT_TRUE(::SetFileTime(file, nullptr, nullptr, &written));
    ::CloseHandle(file);
  }

  /// A property's value; "failed" if it cannot be read.
  static std::wstring Property(IRepository* repository, const wchar_t* name) {
    common::UniqueBstr value;
    const HRESULT hr = repository->GetProperty(Variant(name).bstrVal, value.Put());
    return hr == S_OK && value ? std::wstring(common::ViewOf(value.Get())) : L"failed";
  }

  /// The values of properties A and B, as "(A,B)", of every repository after the cursor.
  static std::wstring Rest(IRepositories* repositories) {
    std::wstring all;
    for (common::ComPtr<IRepository> next; repositories->MoveNext(next.Put()) == S_OK && next;) {
      all += L"(" + Property(next.Get(), L"A") + L"," + Property(next.Get(), L"B") + L")";
    }
    return all;
  }

  common::ComPtr<IRepositories> Repositories() {
    common::ComPtr<IRepositories> repositories;
    m_result = m_manager->GetRepositories(repositories.Put());
    return repositories;
  }

  /// The same for all repositories of the file; "failed" if they cannot be read.
  std::wstring Listed() {
    const common::ComPtr<IRepositories> repositories = Repositories();
    return repositories ? Rest(repositories.Get()) : L"failed";
  }

  ComThread m_com;
  TestFolder m_folder;
  std::wstring m_path = m_folder / L"Repositories.xml";
  ComDll m_component{(ProgramFolder() / L"Corvane8.dll").wstring()};
  common::ComPtr<IRepositoryMgr> m_manager =
      m_component.Create<IRepositoryMgr>(CLSID_RepositoryMgr);
  HRESULT m_result = S_OK;
};

TEST_F(RepositoryTest, DocumentsOfAnyEncodingAreRead) {
  std::string many;
  std::wstring manyListed;
  for (int i = 0; i < 20'000; ++i) {
    many += Repository("x");
    manyListed += L"(x,)";
  }
  const std::string text = "<?xml version='1.0'?>\r\n" + Document("\r\n" + Repository("1"));
  const std::string lost = "<Property Name='B' Value='0'/>";
  const struct {
    std::string bytes;
    std::wstring listed;
  } cases[] = {
      {"<Repositories/>", L""},
      {"<!-- --><?x y?>" + Document("<Repository/><Repository></Repository>") + "\n", L"(,)(,)"},
      {text, L"(1,)"},
      {"\xEF\xBB\xBF" + text, L"(1,)"},
      {Utf16(text), L"(1,)"},
      {Document(Repository("\xC3\x84\xF0\x9F\x98\x80 &lt;&#x4E2D;")),
       L"(\u00C4\U0001F600 <\u4E2D,)"},
      {Document(many), manyListed},
      {Document(Repository(std::string(100'000, 'x'))), L"(" + std::wstring(100'000, L'x') + L",)"},
      // Exact names, the first of doubles, no name, no value.
      {Document("<Repository><Property Name='a' Value='0'/><Property Value='2' Name='B'/>"
                "<Property Value='0'/><Property Name='A'/><Property Name='A' Value='0'/>"
                "</Repository>" +
                Repository("1")),
       L"(,2)(1,)"},
      // Unknown elements, and known ones in the wrong place.
      {"<Repositories Name='A' xmlns='urn:x' xmlns:x='urn:y'>text<![CDATA[<x/>]]><Other/>" +
           Repository("1") + "<x:Repository/><repository/>" + lost + "<Other>" + lost +
           Repository("2") + "</Other></Repositories>",
       L"(1,)"},
      {Document("<Repository Name='B' Value='0'><Other>" + lost + "</Other>" + Repository("0") +
                "<Property Name='A' Other='2'>" + lost + Document(Repository("0")) +
                "</Property></Repository>" + Document("<Repository/>")),
       L"(,)"},
  };
  for (const auto& [bytes, listed] : cases) {
    Write(bytes);
    EXPECT_EQ(listed, Listed()) << bytes.substr(0, 300);
    ::DeleteFileW(m_path.c_str());
    EXPECT_EQ(L"", Listed());
  }
}

TEST_F(RepositoryTest, AMalformedDocumentFailsWithItsLine) {
  std::string deep = "<Repositories>";
  for (int i = 0; i < 100'000; ++i) {
    deep += "<a>";
  }
  const std::pair<std::string, const wchar_t*> cases[] = {
      {"", L", line 1: "},
      {"<!-- -->\n", L", line "},
      {"<!-- \n -->\n<Repository/>", L", line 3: the root element"},
      {"<Repositories/>\n<Repositories/>", L", line 2: not well-formed XML (0x"},
      {"<Repositories>\n<Repository>\n</Repositories>", L", line 3: the end tag"},
      {Utf16("<Repositories>\n\n\n<&/></Repositories>"), L", line 4: "},
      {"<?xml version='1.0'?>\n<!DOCTYPE a>\n<Repositories/>", L", line 2: a document type"},
      {"<Repositories>\n<Repository", L", line 2: "},
      {deep, L", line 1: the elements are nested too deep"},
      // Some parsers do not report where a document ends too early.
      {"<Repositories>\n<Repository>\n", L", line "},
      {"<Repositories>\n<Repository>", L", line "},
      {"<Repositories>\n<Repository><!-- ", L", line "},
  };
  for (const auto& [bytes, description] : cases) {
    SCOPED_TRACE(bytes.substr(0, 100));
    Write(bytes);
    for (int call = 1; call <= 2; ++call) {  // a failure is not kept
      EXPECT_EQ(L"failed", Listed());
      EXPECT_EQ(0xC00CE000, m_result & 0xFFFFF000) << "no code of the parser";
      EXPECT_THAT(TakeDescription(), StartsWith(m_path + description));
    }
  }
}

TEST_F(RepositoryTest, TheFileIsReadAgainWhenItsWriteTimeOrSizeChanges) {
  EXPECT_EQ(L"", Listed()) << "no file yet";
  Write(Document(Repository("1")));
  EXPECT_EQ(L"(1,)", Listed());
  Write(Document(Repository("2")));
  SetPath(m_path);
  EXPECT_EQ(L"(1,)", Listed()) << "path, time and size are the same";
  Write(Document(Repository("3")), 1);
  EXPECT_EQ(L"(3,)", Listed());
  Write(Document(Repository("4")), -1);
  EXPECT_EQ(L"(4,)", Listed());
  Write(Document(Repository("12")), -1);
  EXPECT_EQ(L"(12,)", Listed());
  Write("<", -1);
  EXPECT_EQ(L"failed", Listed());
  Write(Document(Repository("5")), -1);
  EXPECT_EQ(L"(5,)", Listed());
  ::DeleteFileW(m_path.c_str());
  EXPECT_EQ(L"", Listed());
  Write(Document(Repository("6")), -1);
  EXPECT_EQ(L"(6,)", Listed());

  Write(Document(Repository("7")), -1);
  const std::wstring copy = m_folder / L"Copy.xml";
  ::CopyFileW(m_path.c_str(), copy.c_str(), TRUE);
  SetPath(copy);
  EXPECT_EQ(L"(7,)", Listed()) << "time and size are the same, but not the path";
  for (const std::wstring& missing : {m_folder / L"No.xml", m_folder / L"No\\No.xml", L""s}) {
    SetPath(missing);
    EXPECT_EQ(L"", Listed());
  }
}

TEST_F(RepositoryTest, AFileThatCannotBeReadFails) {
  const auto expectFailure = [this](DWORD code) {
    EXPECT_EQ(L"failed", Listed());
    EXPECT_EQ(HRESULT_FROM_WIN32(code), m_result);
    EXPECT_THAT(TakeDescription(), StartsWith(m_path + L": "));
  };
  Write(Document(Repository("1")));
  HANDLE lock = ::CreateFileW(m_path.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  expectFailure(ERROR_SHARING_VIOLATION);
  ::CloseHandle(lock);
  EXPECT_EQ(L"(1,)", Listed());
  EXPECT_TRUE(::DeleteFileW(m_path.c_str())) << "the manager keeps the file open";
  ::CreateDirectoryW(m_path.c_str(), nullptr);
  expectFailure(ERROR_ACCESS_DENIED);
  SetPath(m_path = L"C:\\a?b.xml");
  expectFailure(ERROR_INVALID_NAME);
}

TEST_F(RepositoryTest, TheCursorReturnsEachRepositoryInTurn) {
  Write(Document(Repository("1") + Repository("2")));
  common::ComPtr<IRepositories> repositories;
  common::UniqueBstr path;
  ASSERT_EQ(S_OK, CallSlot(m_manager.Get(), 1, path.Put()));
  EXPECT_EQ(m_path, common::ViewOf(path.Get()));
  ASSERT_EQ(S_OK, CallSlot(m_manager.Get(), 3, repositories.Put()));
  const auto none = static_cast<void*>(nullptr);
  EXPECT_EQ(E_POINTER, CallSlotWithNull(m_manager.Get(), 1, none));
  EXPECT_EQ(E_POINTER, CallSlotWithNull(m_manager.Get(), 3, none));
  common::ComPtr<IRepository> repository;
  const std::pair<size_t, const wchar_t*> moves[] = {
      {2, L"1"}, {2, L"2"}, {2, nullptr}, {2, nullptr}, {1, L"1"}, {1, L"1"}, {2, L"2"}};
  for (const auto& [slot, value] : moves) {
    EXPECT_EQ(E_POINTER, CallSlotWithNull(repositories.Get(), slot, none));  // moves nothing
    ASSERT_EQ(S_OK, CallSlot(repositories.Get(), slot, repository.Put()));
    ASSERT_EQ(value != nullptr, repository.Get() != nullptr);
    EXPECT_EQ(value ? value : L"", repository ? Property(repository.Get(), L"A") : L"");
  }
  EXPECT_EQ(E_POINTER, CallSlotWithNull(repository.Get(), 1, Variant(L"A").bstrVal, none));
}

TEST_F(RepositoryTest, ObjectsOutliveManagerAndFileAndLockTheComponent) {
  Write(Document(Repository("1") + Repository("2")));
  common::ComPtr<IRepositories> repositories = Repositories();
  Write("<Repositories/>", 1);
  EXPECT_EQ(L"", Listed());
  m_manager.Release();
  EXPECT_EQ(L"(1,)(2,)", Rest(repositories.Get()));
  common::ComPtr<IRepository> repository;
  ASSERT_EQ(S_OK, repositories->MoveFirst(repository.Put()));
  repositories.Release();
  EXPECT_EQ(S_FALSE, m_component.DllCanUnloadNow());
  EXPECT_EQ(L"1", Property(repository.Get(), L"A"));
  repository.Release();
  EXPECT_EQ(S_OK, m_component.DllCanUnloadNow());
}

}  // namespace

}  // namespace qm::tests

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "common/Bstr.h"
#include "idl/siblings.h"
#include "tests/support/Answers.h"
#include "tests/support/ComDll.h"
#include "tests/support/TestFolder.h"

namespace qm::tests {

namespace {

using testing::StartsWith;

constexpr char kText[] =
    "[First]\r\nOne=1\r\nTwo=zwei\r\nTWO=again\r\nbare\r\n[Second]\r\n[FIRST]\r\nHidden=1\r\n";

class IniReaderTest : public ::testing::Test {
 protected:
  std::wstring Write(const wchar_t* name, std::string_view bytes) {
    PutFile(m_folder / name, bytes);
    return m_folder / name;
  }

  HRESULT Load(const std::wstring& path) {
    const common::UniqueBstr text(common::TryAllocateBstr(path));
    return m_reader->Load(text.Get());
  }

  common::ComPtr<IIniSections> Sections() {
    common::ComPtr<IIniSections> sections;
    EXPECT_EQ(S_OK, m_reader->get_Sections(sections.Put()));
    return sections;
  }

  common::ComPtr<IIniSection> Section(const VARIANT& index) {
    common::ComPtr<IIniSection> section;
    EXPECT_EQ(S_OK, Sections()->get_Item(index, section.Put()));
    return section;
  }

  common::ComPtr<IIniKeys> Keys(const wchar_t* section) {
    common::ComPtr<IIniKeys> keys;
    EXPECT_EQ(S_OK, Section(Variant(section))->get_Keys(keys.Put()));
    return keys;
  }

  /// The value of a key; "(none)" if there is no such key.
  static std::wstring Value(IIniKeys* keys, const VARIANT& index) {
    auto* found = reinterpret_cast<IIniKey*>(keys);  // must be overwritten in any case
    EXPECT_EQ(S_OK, keys->get_Item(index, &found));
    const auto key = common::ComPtr<IIniKey>::Adopt(found);
    common::UniqueBstr value;
    EXPECT_EQ(S_OK, key ? key->get_Value(value.Put()) : S_OK);
    return key ? std::wstring(common::ViewOf(value.Get())) : L"(none)";
  }

  ComThread m_com;
  TestFolder m_folder;
  ComDll m_component{(ProgramFolder() / L"Gleaner.dll").wstring()};
  common::ComPtr<IIniReader> m_reader = m_component.Create<IIniReader>(CLSID_IniReader);
};

TEST_F(IniReaderTest, EveryInterfaceIsCalledBySlot) {
  const common::UniqueBstr path(common::TryAllocateBstr(Write(L"a.ini", kText)));
  ASSERT_EQ(S_OK, CallSlot(m_reader.Get(), 2, path.Get()));
  common::ComPtr<IUnknown> sections, section, keys, key;
  ASSERT_EQ(S_OK, CallSlot(m_reader.Get(), 1, sections.Put()));
  const Variant name(L"fiRST"), two(2);
  ASSERT_EQ(S_OK, CallSlot(sections.Get(), 1, static_cast<VARIANT>(name), section.Put()));
  common::UniqueBstr sectionName, keyName, value;
  ASSERT_EQ(S_OK, CallSlot(section.Get(), 1, sectionName.Put()));
  ASSERT_EQ(S_OK, CallSlot(section.Get(), 2, keys.Put()));
  ASSERT_EQ(S_OK, CallSlot(keys.Get(), 1, static_cast<VARIANT>(two), key.Put()));
  long count = -1;
  ASSERT_EQ(S_OK, CallSlot(keys.Get(), 2, &count));
  ASSERT_EQ(S_OK, CallSlot(key.Get(), 1, keyName.Put()));
  ASSERT_EQ(S_OK, CallSlot(key.Get(), 2, value.Put()));
  EXPECT_EQ(L"First", common::ViewOf(sectionName.Get()));
  EXPECT_EQ(4, count);
  EXPECT_EQ(L"Two", common::ViewOf(keyName.Get()));
  EXPECT_EQ(L"zwei", common::ViewOf(value.Get()));

  const std::pair<IUnknown*, size_t> getters[] = {{m_reader.Get(), 1}, {section.Get(), 1},
                                                  {section.Get(), 2},  {keys.Get(), 2},
                                                  {key.Get(), 1},      {key.Get(), 2}};
  for (const auto& [object, slot] : getters) {
    EXPECT_EQ(E_POINTER, CallSlotWithNull(object, slot, static_cast<void*>(nullptr))) << slot;
  }
  for (IUnknown* const collection : {sections.Get(), keys.Get()}) {
    EXPECT_EQ(E_POINTER, CallSlotWithNull(collection, 1, static_cast<VARIANT>(two),
                                          static_cast<void*>(nullptr)));
  }
}

TEST_F(IniReaderTest, SectionsAreFoundByNameAndByPosition) {
  ASSERT_EQ(S_OK, Load(Write(L"a.ini", kText)));
  const wchar_t* const names[] = {nullptr, L"First", L"Second", L"FIRST", nullptr};
  for (long position = 0; position < 5; ++position) {
    const common::ComPtr<IIniSection> section = Section(Variant(position));
    ASSERT_EQ(names[position] != nullptr, section.Get() != nullptr) << position;
    common::UniqueBstr name;
    EXPECT_EQ(S_OK, section ? section->get_Name(name.Put()) : S_OK);
    EXPECT_EQ(names[position] ? names[position] : L"", common::ViewOf(name.Get()));
  }
  EXPECT_FALSE(Section(Variant(L"Third")));
  for (const auto& [position, value] : {std::pair(0L, L"(none)"), {1, L"1"}, {5, L"(none)"}}) {
    EXPECT_EQ(value, Value(Keys(L"First").Get(), Variant(position)));
  }
  EXPECT_EQ(L"(none)", Value(Keys(L"FIRST").Get(), Variant(L"Hidden"))) << "not the first";
}

TEST_F(IniReaderTest, AFileThatCannotBeReadFailsAndLeavesNoSections) {
  const std::wstring good = Write(L"a.ini", kText);
  const std::wstring locked = Write(L"locked.ini", kText);
  HANDLE lock = ::CreateFileW(locked.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  EXPECT_FALSE(Section(Variant(1))) << "before any Load";
  const struct {
    std::wstring path;
    DWORD code;
  } cases[] = {{m_folder / L"missing.ini", ERROR_FILE_NOT_FOUND},
               {m_folder / L"missing\\a.ini", ERROR_PATH_NOT_FOUND},
               {ProgramFolder().wstring(), ERROR_ACCESS_DENIED},
               {locked, ERROR_SHARING_VIOLATION},
               {L"", ERROR_PATH_NOT_FOUND}};
  for (const auto& [path, code] : cases) {
    SCOPED_TRACE(testing::PrintToString(path));
    ASSERT_EQ(S_OK, Load(good));
    EXPECT_EQ(HRESULT_FROM_WIN32(code), Load(path));
    EXPECT_THAT(TakeDescription(), StartsWith(path + L": "));
    EXPECT_FALSE(Section(Variant(1))) << "what was read before is gone";
  }
  EXPECT_EQ(HRESULT_FROM_WIN32(ERROR_PATH_NOT_FOUND), m_reader->Load(nullptr));
  ::CloseHandle(lock);

  common::ComPtr<ISupportErrorInfo> support;
  ASSERT_EQ(S_OK, m_reader.QueryInterface(support.Put()));
  EXPECT_EQ(S_OK, support->InterfaceSupportsErrorInfo(__uuidof(IIniReader)));
}

TEST_F(IniReaderTest, AFileThatIsOpenForWritingIsReadAndLeftAlone) {
  const std::wstring path = Write(L"a.ini", kText);
  HANDLE writer = ::CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr,
                                OPEN_EXISTING, 0, nullptr);
  EXPECT_EQ(S_OK, Load(path));
  ::CloseHandle(writer);
  EXPECT_TRUE(::DeleteFileW(path.c_str())) << "the reader keeps the file open";
  EXPECT_EQ(L"1", Value(Keys(L"First").Get(), Variant(L"One")));
}

TEST_F(IniReaderTest, ObjectsOutliveReaderAndFileAndLockTheComponent) {
  ASSERT_EQ(S_OK, Load(Write(L"a.ini", kText)));
  common::ComPtr<IIniSections> sections = Sections();
  common::ComPtr<IIniSection> section = Section(Variant(L"First"));
  common::ComPtr<IIniKeys> keys = Keys(L"First");
  common::ComPtr<IIniKey> key;
  ASSERT_EQ(S_OK, keys->get_Item(Variant(L"Two"), key.Put()));
  ASSERT_EQ(S_OK, Load(Write(L"a.ini", "[Other]\nOne=2\n")));
  EXPECT_FALSE(Section(Variant(L"First")));
  EXPECT_EQ(L"2", Value(Keys(L"Other").Get(), Variant(L"One")));
  m_reader.Release();

  // Each of them keeps the contents of the file and the component alive.
  const auto expectLocked = [&](bool locked) {
    EXPECT_EQ(locked ? S_FALSE : S_OK, m_component.DllCanUnloadNow());
  };
  common::ComPtr<IIniSection> again;
  EXPECT_EQ(S_OK, sections->get_Item(Variant(L"first"), again.Put()));
  EXPECT_TRUE(again);
  again.Release();
  sections.Release();
  common::UniqueBstr text;
  EXPECT_EQ(S_OK, section->get_Name(text.Put()));
  EXPECT_EQ(L"First", common::ViewOf(text.Get()));
  section.Release();
  EXPECT_EQ(L"1", Value(keys.Get(), Variant(L"ONE")));
  keys.Release();
  expectLocked(true);
  EXPECT_EQ(S_OK, key->get_Value(text.Put()));
  EXPECT_EQ(L"zwei", common::ViewOf(text.Get()));
  key.Release();
  expectLocked(false);
}

}  // namespace

}  // namespace qm::tests

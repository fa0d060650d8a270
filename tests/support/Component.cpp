#include "tests/support/Component.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

void ExpectMembers(IDispatch* object, const wchar_t* members) {
  std::wistringstream names(members);
  std::wstring name;
  for (DISPID slot = 1; names >> name; ++slot) {
    wchar_t* text = name.data();
    DISPID id = DISPID_UNKNOWN;
    EXPECT_EQ(S_OK, object->GetIDsOfNames(IID_NULL, &text, 1, LOCALE_NEUTRAL, &id));
    EXPECT_EQ(name == L"Item" ? 0 : slot, id) << testing::PrintToString(name);
  }
}

void PutFile(const std::wstring& path, std::string_view bytes) {
  std::ofstream(std::filesystem::path(path), std::ios::binary)
      .write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

#include "client/catalog/IniSection.h"

#include "client/catalog/Properties.h"
#include "idl/siblings.h"
#include "text/Utf.h"

namespace mmcat {

std::vector<IniLine> ReadIniSection(const std::string& path, const wchar_t* section) {
  const auto reader = CreateObject<IIniReader>(CLSID_IniReader, "Gleaner.dll");
  ThrowIfFailed(reader->Load(MakeArgument(qm::text::ToWide(path)).Get()));
  const qm::common::ComPtr<IIniSections> sections = ReadObject(*reader, &IIniReader::get_Sections);
  const qm::common::UniqueBstr name = MakeArgument(section);
  VARIANT index;
  index.vt = VT_BSTR;
  index.bstrVal = name.Get();
  qm::common::ComPtr<IIniSection> found;
  ThrowIfFailed(sections->get_Item(index, found.Put()));
  std::vector<IniLine> lines;
  if (found) {
    ForEachItem<IIniKey>(*ReadObject(*found, &IIniSection::get_Keys), [&](IIniKey& key) {
      lines.push_back({ReadText(key, &IIniKey::get_Name), ReadText(key, &IIniKey::get_Value)});
    });
  }
  return lines;
}

}  // namespace mmcat

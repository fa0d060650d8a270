#include "client/catalog/IniSection.h"

#include "client/catalog/Properties.h"
#include "idl/siblings.h"
#include "text/Utf.h"

using qm::text::ToWide;

std::vector<IniLine> ReadIniSection(const std::string& path, const wchar_t* section) {
  const auto reader = Create<IIniReader>(CLSID_IniReader, "Gleaner.dll");
  Check(reader->Load(Argument(ToWide(path)).Get()));
  const CComPtr<IIniSections> sections = Get(*reader, &IIniReader::get_Sections);
  const CUniqueBstr name = Argument(section);
  VARIANT index;
  index.vt = VT_BSTR;
  index.bstrVal = name.Get();
  CComPtr<IIniSection> found;
  Check(sections->get_Item(index, found.Put()));
  std::vector<IniLine> lines;
  if (found) {
    ForEach<IIniKey>(*Get(*found, &IIniSection::get_Keys), [&](IIniKey& key) {
      lines.push_back({Text(key, &IIniKey::get_Name), Text(key, &IIniKey::get_Value)});
    });
  }
  return lines;
}

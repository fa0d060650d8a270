#include "gallery/IniAccess.h"

#include "com/error/Raise.h"
#include "common/Bstr.h"

namespace qm::gallery {

namespace {

template <class Interface>
void RequireResult(const common::ComPtr<Interface>& object) {
  if (!object) {
    com::Raise(com_exception(E_UNEXPECTED,
                             L"Gleaner.dll: The INI reader answered success without an object."));
  }
}

/// Gets the item of a collection at `index`; null if there is no such item.
template <class Item, class Collection>
common::ComPtr<Item> GetItem(Collection& collection, VARIANT index) {
  common::ComPtr<Item> item;
  com::RaiseIfFailed(collection.get_Item(index, item.Put()));
  return item;
}

template <class Item, class Collection>
common::ComPtr<Item> FindByName(Collection& collection, const common::WideString& name) {
  const common::UniqueBstr text = com::AllocateBstr(name);
  VARIANT index;
  index.vt = VT_BSTR;
  index.bstrVal = text.Get();
  return GetItem<Item>(collection, index);
}

}  // namespace

common::ComPtr<IIniSection> FindSection(IIniReader& reader, const common::WideString& section) {
  common::ComPtr<IIniSections> sections;
  com::RaiseIfFailed(reader.get_Sections(sections.Put()));
  RequireResult(sections);
  return FindByName<IIniSection>(*sections, section);
}

common::ComPtr<IIniKeys> GetKeys(IIniSection& section) {
  common::ComPtr<IIniKeys> keys;
  com::RaiseIfFailed(section.get_Keys(keys.Put()));
  RequireResult(keys);
  return keys;
}

long GetKeyCount(IIniKeys& keys) {
  long count = 0;
  com::RaiseIfFailed(keys.get_Count(&count));
  return count;
}

common::ComPtr<IIniKey> FindKey(IIniKeys& keys, const common::WideString& name) {
  return FindByName<IIniKey>(keys, name);
}

common::ComPtr<IIniKey> FindKey(IIniKeys& keys, long position) {
  VARIANT index;
  index.vt = VT_I4;
  index.lVal = position;
  return GetItem<IIniKey>(keys, index);
}

common::WideString GetKeyName(IIniKey& key) {
  common::UniqueBstr text;
  com::RaiseIfFailed(key.get_Name(text.Put()));
  return common::ViewOf(text.Get());
}

common::WideString GetKeyValue(IIniKey& key) {
  common::UniqueBstr text;
  com::RaiseIfFailed(key.get_Value(text.Put()));
  return common::ViewOf(text.Get());
}

}  // namespace qm::gallery

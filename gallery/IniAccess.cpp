#include "gallery/IniAccess.h"

#include "com/error/Raise.h"
#include "common/Bstr.h"

namespace {

template <class Interface>
void RequireObject(const CComPtr<Interface>& object) {
  if (!object) {
    Raise(com_exception(E_UNEXPECTED,
                        L"Gleaner.dll: The INI reader answered success without an object."));
  }
}

/// Gets the item of a collection at `index`; null if there is no such item.
template <class Item, class Collection>
CComPtr<Item> Find(Collection& collection, VARIANT index) {
  CComPtr<Item> item;
  RaiseIfFailed(collection.get_Item(index, item.Put()));
  return item;
}

template <class Item, class Collection>
CComPtr<Item> FindByName(Collection& collection, const CWideString& name) {
  const CUniqueBstr text = MakeBstr(name);
  VARIANT index;
  index.vt = VT_BSTR;
  index.bstrVal = text.Get();
  return Find<Item>(collection, index);
}

}  // namespace

CComPtr<IIniSection> FindSection(IIniReader& reader, const CWideString& section) {
  CComPtr<IIniSections> sections;
  RaiseIfFailed(reader.get_Sections(sections.Put()));
  RequireObject(sections);
  return FindByName<IIniSection>(*sections, section);
}

CComPtr<IIniKeys> KeysOf(IIniSection& section) {
  CComPtr<IIniKeys> keys;
  RaiseIfFailed(section.get_Keys(keys.Put()));
  RequireObject(keys);
  return keys;
}

long CountOf(IIniKeys& keys) {
  long count = 0;
  RaiseIfFailed(keys.get_Count(&count));
  return count;
}

CComPtr<IIniKey> FindKey(IIniKeys& keys, const CWideString& name) {
  return FindByName<IIniKey>(keys, name);
}

CComPtr<IIniKey> FindKey(IIniKeys& keys, long position) {
  VARIANT index;
  index.vt = VT_I4;
  index.lVal = position;
  return Find<IIniKey>(keys, index);
}

CWideString NameOf(IIniKey& key) {
  CUniqueBstr text;
  RaiseIfFailed(key.get_Name(text.Put()));
  return ViewOf(text.Get());
}

CWideString ValueOf(IIniKey& key) {
  CUniqueBstr text;
  RaiseIfFailed(key.get_Value(text.Put()));
  return ViewOf(text.Get());
}

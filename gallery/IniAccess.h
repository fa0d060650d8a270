#pragma once

#include "gallery/SiblingObjects.h"

namespace qm::gallery {

// Wrappers of the INI reader's interfaces. They raise the reader's failures. A missing section or
// key is a null pointer. If the reader succeeds but returns no collection, they raise E_UNEXPECTED
// with the name of its DLL.

common::ComPtr<IIniSection> FindSection(IIniReader& reader, const common::WideString& section);

common::ComPtr<IIniKeys> GetKeys(IIniSection& section);

long GetKeyCount(IIniKeys& keys);

/// Finds a key by its name, ignoring case, or by its position, counted from 1.
common::ComPtr<IIniKey> FindKey(IIniKeys& keys, const common::WideString& name);
common::ComPtr<IIniKey> FindKey(IIniKeys& keys, long position);

common::WideString GetKeyName(IIniKey& key);

common::WideString GetKeyValue(IIniKey& key);

/// Calls `use` with the name and the value of every line of a section, in file order. Does nothing
/// if there is no such section.
template <class Use>
void ForEachLine(IIniReader& reader, const common::WideString& section, Use use) {
  const common::ComPtr<IIniSection> found = FindSection(reader, section);
  if (!found) {
    return;
  }
  const common::ComPtr<IIniKeys> keys = GetKeys(*found);
  const long count = GetKeyCount(*keys);
  for (long position = 1; position <= count; ++position) {
    if (const common::ComPtr<IIniKey> key = FindKey(*keys, position)) {
      use(GetKeyName(*key), GetKeyValue(*key));
    }
  }
}

}  // namespace qm::gallery

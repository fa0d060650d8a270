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

}  // namespace qm::gallery

#pragma once

#include "gallery/SiblingObjects.h"

// Wrappers of the INI reader's interfaces. They raise the reader's failures. A missing section or
// key is a null pointer. If the reader succeeds but returns no collection, they raise E_UNEXPECTED
// with the name of its DLL.

CComPtr<IIniSection> FindSection(IIniReader& reader, const CWideString& section);

CComPtr<IIniKeys> KeysOf(IIniSection& section);

long CountOf(IIniKeys& keys);

/// Finds a key by its name, ignoring case, or by its position, counted from 1.
CComPtr<IIniKey> FindKey(IIniKeys& keys, const CWideString& name);
CComPtr<IIniKey> FindKey(IIniKeys& keys, long position);

CWideString NameOf(IIniKey& key);

CWideString ValueOf(IIniKey& key);

#pragma once

#include "gallery/Siblings.h"

// Reading through the INI reader. Each function raises what the reader answers; a section or key
// that is missing is a null pointer. A reader that succeeds without the object that it has to give
// is raised as E_UNEXPECTED under its DLL's name.

CComPtr<IIniSection> FindSection(IIniReader& reader, const CWideString& section);

CComPtr<IIniKeys> KeysOf(IIniSection& section);

long CountOf(IIniKeys& keys);

/// A key by its name, in any letter case, or by its position from 1.
CComPtr<IIniKey> FindKey(IIniKeys& keys, const CWideString& name);
CComPtr<IIniKey> FindKey(IIniKeys& keys, long position);

CWideString NameOf(IIniKey& key);

/// The text of a key.
CWideString ValueOf(IIniKey& key);

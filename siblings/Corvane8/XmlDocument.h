#pragma once

#include <windows.h>
#include <xmllite.h>

#include <optional>
#include <string_view>

#include "common/ComPtr.h"
#include "common/WideString.h"

/// A document that is read forward, node by node, by the platform's parser: in UTF-8, or in UTF-16
/// with a byte-order mark, without a document type, of elements that lie at most 256 deep.
///
/// What is malformed is raised with the HRESULT of the parser and a description that names the file
/// and the line, "C:\Repositories.xml, line 3: ...".
class CXmlDocument {
 public:
  /// The bytes of a file; `path` is for descriptions.
  CXmlDocument(const CWideString& path, std::string_view bytes);

  /// Goes on to the next node and gives its type; XmlNodeType_None behind the last one.
  XmlNodeType Next();

  // Of the element at whose start tag the document stands.

  /// Whether this is its name, prefix included.
  bool IsNamed(std::wstring_view name);
  bool IsEmptyElement() { return m_reader->IsEmptyElement() != FALSE; }
  /// The value of an attribute, where there is such.
  std::optional<CWideString> Attribute(const wchar_t* name);

  /// Raises a failure at the present line.
  [[noreturn]] void RaiseHere(HRESULT hr, const wchar_t* text);

 private:
  struct Place {
    XmlNodeType type;
    UINT line;
    UINT position;
  };

  [[noreturn]] void RaiseParserFailure(HRESULT hr);

  CWideString m_path;
  CComPtr<IXmlReader> m_reader;
  Place m_last{XmlNodeType_None, 0, 0};
};

#pragma once

#include <windows.h>
#include <xmllite.h>

#include <optional>
#include <string_view>

#include "common/ComPtr.h"
#include "common/WideString.h"

namespace qm::siblings {

/// Forward-only reader of an XML document, which uses the platform's parser. The document must be
/// in UTF-8, or in UTF-16 with a byte-order mark. It must not have a document type, nor nest its
/// elements more than 256 deep.
///
/// Malformed documents are raised with the parser's HRESULT and a description that begins with the
/// file and the line, "C:\Repositories.xml, line 3: ...".
class XmlReader {
 public:
  /// Reads the bytes of a file; `path` is used in descriptions.
  XmlReader(const common::WideString& path, std::string_view bytes);

  /// Moves to the next node and returns its type; XmlNodeType_None after the last node.
  XmlNodeType ReadNode();

  // The following require the current node to be a start tag.

  /// Returns whether `name` is the name of the element, prefix included.
  bool HasName(std::wstring_view name);
  bool IsEmptyElement() { return m_reader->IsEmptyElement() != FALSE; }
  /// Returns the value of an attribute, if the element has it.
  std::optional<common::WideString> GetAttribute(const wchar_t* name);

  /// Raises a failure at the current line.
  [[noreturn]] void RaiseAtLine(HRESULT hr, const wchar_t* text);

 private:
  struct Place {
    XmlNodeType type;
    UINT line;
    UINT position;
  };

  [[noreturn]] void RaiseParserFailure(HRESULT hr);

  common::WideString m_path;
  common::ComPtr<IXmlReader> m_reader;
  Place m_last{XmlNodeType_None, 0, 0};
};

}  // namespace qm::siblings

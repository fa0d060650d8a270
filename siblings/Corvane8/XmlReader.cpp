#include "siblings/Corvane8/XmlReader.h"

#include <shlwapi.h>

#include <algorithm>
#include <new>

#include "com/error/Raise.h"

CXmlDocument::CXmlDocument(const CWideString& path, std::string_view bytes) : m_path(path) {
  const auto stream = CComPtr<IStream>::Adopt(::SHCreateMemStream(
      reinterpret_cast<const BYTE*>(bytes.data()), static_cast<UINT>(bytes.size())));
  if (!stream) {
    throw std::bad_alloc();
  }
  RaiseIfFailed(
      ::CreateXmlReader(__uuidof(IXmlReader), reinterpret_cast<void**>(m_reader.Put()), nullptr));
  RaiseIfFailed(m_reader->SetProperty(XmlReaderProperty_DtdProcessing, DtdProcessing_Prohibit));
  RaiseIfFailed(m_reader->SetInput(stream.Get()));
}

XmlNodeType CXmlDocument::Next() {
  Place place{XmlNodeType_None, 0, 0};
  const HRESULT hr = m_reader->Read(&place.type);
  if (FAILED(hr)) {
    RaiseParserFailure(hr);
  }
  if (hr == S_FALSE) {
    return XmlNodeType_None;
  }
  m_reader->GetLineNumber(&place.line);
  m_reader->GetLinePosition(&place.position);
  // Wine's parser (seen in 8.0) returns the same node forever if the file ends inside an element.
  if (place.type == m_last.type && place.line == m_last.line && place.position == m_last.position) {
    RaiseParserFailure(MX_E_INPUTEND);
  }
  m_last = place;
  return place.type;
}

bool CXmlDocument::IsNamed(std::wstring_view name) {
  const wchar_t* text = nullptr;
  UINT length = 0;
  RaiseIfFailed(m_reader->GetQualifiedName(&text, &length));
  return std::wstring_view(text, length) == name;
}

std::optional<CWideString> CXmlDocument::Attribute(const wchar_t* name) {
  const HRESULT found = m_reader->MoveToAttributeByName(name, nullptr);
  RaiseIfFailed(found);
  if (found != S_OK) {
    return std::nullopt;
  }
  const wchar_t* text = nullptr;
  UINT length = 0;
  RaiseIfFailed(m_reader->GetValue(&text, &length));
  CWideString value(text, length);
  RaiseIfFailed(m_reader->MoveToElement());
  return value;
}

void CXmlDocument::RaiseHere(HRESULT hr, const wchar_t* text) {
  UINT line = 0;
  m_reader->GetLineNumber(&line);
  // The line number is 0 until the first line is read.
  Raise({hr, CWideString::Format(L"%s, line %u: %s", m_path.c_str(), std::max(line, 1U), text)});
}

void CXmlDocument::RaiseParserFailure(HRESULT hr) {
  // The system has no texts for the parser's codes.
  switch (static_cast<DWORD>(hr)) {
    case static_cast<DWORD>(E_OUTOFMEMORY):
      throw std::bad_alloc();
    case MX_E_INPUTEND:
      RaiseHere(hr, L"the file ends too early");
    case WC_E_ELEMENTMATCH:
      RaiseHere(hr, L"the end tag does not match the start tag");
    case WC_E_DTDPROHIBITED:
      RaiseHere(hr, L"a document type is not allowed");
    case SC_E_MAXELEMENTDEPTH:
      RaiseHere(hr, L"the elements are nested too deep");
    default:
      RaiseHere(hr, CWideString::Format(L"not well-formed XML (0x%08X)", hr).c_str());
  }
}

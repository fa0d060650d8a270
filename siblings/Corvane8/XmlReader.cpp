#include "siblings/Corvane8/XmlReader.h"

#include <shlwapi.h>

#include <algorithm>
#include <new>

#include "com/error/Raise.h"

namespace qm::siblings {

XmlReader::XmlReader(const common::WideString& path, std::string_view bytes) : m_path(path) {
  const auto stream = common::ComPtr<IStream>::Adopt(::SHCreateMemStream(
      reinterpret_cast<const BYTE*>(bytes.data()), static_cast<UINT>(bytes.size())));
  if (!stream) {
    throw std::bad_alloc();
  }
  com::RaiseIfFailed(
      ::CreateXmlReader(__uuidof(IXmlReader), reinterpret_cast<void**>(m_reader.Put()), nullptr));
  com::RaiseIfFailed(
      m_reader->SetProperty(XmlReaderProperty_DtdProcessing, DtdProcessing_Prohibit));
  com::RaiseIfFailed(m_reader->SetInput(stream.Get()));
}

XmlNodeType XmlReader::ReadNode() {
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

bool XmlReader::HasName(std::wstring_view name) {
  const wchar_t* text = nullptr;
  UINT length = 0;
  com::RaiseIfFailed(m_reader->GetQualifiedName(&text, &length));
  return std::wstring_view(text, length) == name;
}

std::optional<common::WideString> XmlReader::GetAttribute(const wchar_t* name) {
  const HRESULT found = m_reader->MoveToAttributeByName(name, nullptr);
  com::RaiseIfFailed(found);
  if (found != S_OK) {
    return std::nullopt;
  }
  const wchar_t* text = nullptr;
  UINT length = 0;
  com::RaiseIfFailed(m_reader->GetValue(&text, &length));
  common::WideString value(text, length);
  com::RaiseIfFailed(m_reader->MoveToElement());
  return value;
}

void XmlReader::RaiseAtLine(HRESULT hr, const wchar_t* text) {
  UINT line = 0;
  m_reader->GetLineNumber(&line);
  // The line number is 0 until the first line is read.
  com::Raise({hr, common::WideString::Format(L"%s, line %u: %s", m_path.c_str(), std::max(line, 1U),
                                             text)});
}

void XmlReader::RaiseParserFailure(HRESULT hr) {
  // The system has no texts for the parser's codes.
  switch (static_cast<DWORD>(hr)) {
    case static_cast<DWORD>(E_OUTOFMEMORY):
      throw std::bad_alloc();
    case MX_E_INPUTEND:
      RaiseAtLine(hr, L"the file ends too early");
    case WC_E_ELEMENTMATCH:
      RaiseAtLine(hr, L"the end tag does not match the start tag");
    case WC_E_DTDPROHIBITED:
      RaiseAtLine(hr, L"a document type is not allowed");
    case SC_E_MAXELEMENTDEPTH:
      RaiseAtLine(hr, L"the elements are nested too deep");
    default:
      RaiseAtLine(hr, common::WideString::Format(L"not well-formed XML (0x%08X)", hr).c_str());
  }
}

}  // namespace qm::siblings

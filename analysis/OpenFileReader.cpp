#include "analysis/OpenFileReader.h"

#include "idl/mergeset.h"
#include "text/Utf.h"

namespace qm::analysis {

STDMETHODIMP OpenFileReader::BeginFiles(ULONG count) {
  m_count = static_cast<long>(count);
  m_begun = 0;
  return S_OK;
}

STDMETHODIMP OpenFileReader::ReadFile(const WCHAR* path, void* file) {
  return com::RunAtBoundary(CLSID_MergeSet, [&]() -> HRESULT {
    m_failure = com::CaptureFailure([&] { m_progress->Report(++m_begun, m_count); });
    if (m_failure) {
      return m_failure->hr;
    }
    try {
      msidb::ModuleFile opened(file);
      const std::string utf8 = text::ToUtf8(std::wstring_view(path));
      m_contents.insert_or_assign(utf8, ReadModuleContents(opened, utf8, m_shared));
    } catch (const msidb::FileError&) {
      return S_FALSE;  // LoadSet then opens the file itself and reports the failure
    }
    return S_OK;
  });
}

void OpenFileReader::RaiseFailure() const {
  if (m_failure) {
    com::Raise(*m_failure);
  }
}

std::optional<ModuleContents> OpenFileReader::Take(const std::string& path) {
  const auto found = m_contents.find(path);
  if (found == m_contents.end()) {
    return std::nullopt;
  }
  std::optional<ModuleContents> contents(std::move(found->second));
  m_contents.erase(found);
  return contents;
}

}  // namespace qm::analysis

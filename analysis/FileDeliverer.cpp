#include "analysis/FileDeliverer.h"

#include <algorithm>
#include <string>
#include <vector>

#include "analysis/FileItem.h"
#include "analysis/ModuleItem.h"
#include "merge/JoinTexts.h"

namespace qm::analysis {

void FileDeliverer::Init(SharedSet set, const merge::Deliverer& deliverer) {
  m_set = std::move(set);
  m_deliverer = deliverer;
}

STDMETHODIMP FileDeliverer::get_FileName(BSTR* value) {
  return AnswerUtf8(value, m_deliverer.file);
}
STDMETHODIMP FileDeliverer::get_ModuleKey(BSTR* value) {
  return AnswerUtf8(value, m_deliverer.moduleKey);
}
STDMETHODIMP FileDeliverer::get_Module(ISetModule** value) {
  return Answer(value, [&] { return MakeModule(m_set, m_deliverer.module); });
}
STDMETHODIMP FileDeliverer::get_Copies(long* value) {
  return AnswerNumber(value, static_cast<long>(m_deliverer.copies.size()));
}
STDMETHODIMP FileDeliverer::get_Files(ISetFiles** value) {
  return Answer(value, [&] {
    std::vector<merge::FoundFile> files;
    for (const merge::DeliveredFile* const file : m_deliverer.copies) {
      files.push_back({*m_deliverer.module, file});
    }
    return MakeFiles(m_set, std::move(files));
  });
}
STDMETHODIMP FileDeliverer::get_IndexFile(BSTR* value) {
  return AnswerText(value, [&] {
    std::vector<std::string> tables;
    for (const merge::IndexEntry* const entry : m_deliverer.entries) {
      if (std::find(tables.begin(), tables.end(), entry->table) == tables.end()) {
        tables.push_back(entry->table);
      }
    }
    return text::ToWide(merge::JoinTexts(tables, ", "));
  });
}
STDMETHODIMP FileDeliverer::get_Problem(BSTR* value) {
  return AnswerUtf8(value, m_deliverer.fault == merge::IndexFault::AbsentModule
                               ? "The set does not have the module that the index names."
                           : m_deliverer.fault == merge::IndexFault::NotDelivered
                               ? "The module that the index names does not deliver the file."
                               : "");
}

}  // namespace qm::analysis

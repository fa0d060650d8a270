#include "client/ShowCommand.h"

#include <cstdio>

#include "client/ModuleDescription.h"
#include "client/ModuleJson.h"
#include "client/ModuleText.h"
#include "client/Utf8.h"
#include "common/Bstr.h"
#include "common/ComPtr.h"
#include "common/Path.h"
#include "idl/qmmmupdater2.h"

namespace {

CComPtr<IMergeModule2> CreateModule() {
  CComPtr<IMergeModule2> module;
  Check(::CoCreateInstance(CLSID_MergeModule2, nullptr, CLSCTX_INPROC_SERVER,
                           __uuidof(IMergeModule2), reinterpret_cast<void**>(module.Put())));
  return module;
}

ModuleDescription Read(IMergeModule2& module, const std::string& file) {
  const CUniqueBstr path(AllocBstr(FullPath(ToWide(file))));
  Check(path ? module.Open(path.Get()) : E_OUTOFMEMORY);
  return Describe(module);
}

void PrintFailure(const std::string& file, const std::string& part, const ServerFailure& failure) {
  const std::string subject = part.empty() ? file : file + ": " + part;
  std::fprintf(stderr, "mmcat: %s: %s %s\n", subject.c_str(), HResultText(failure.Result()).c_str(),
               failure.what());
}

/// Collects what a run shows and says.
class Report {
 public:
  explicit Report(bool json) : m_json(json) {}

  void Add(const std::string& file, const ModuleDescription& module) {
    if (m_json) {
      m_document["modules"].push_back(ModuleJson(module));
    } else {
      // A blank line between modules.
      const std::string text = (m_first ? "" : "\n") + ModuleText(module);
      m_first = false;
      std::fwrite(text.data(), 1, text.size(), stdout);
    }
    for (const PartFailure& failed : module.failures) {
      Add(file, failed.part, failed.failure);
    }
  }

  void Add(const std::string& file, const std::string& part, const ServerFailure& failure) {
    m_failed = true;
    m_document["errors"].push_back(FailureJson(file, part, failure));
    PrintFailure(file, part, failure);
  }

  ExitCode Finish() const {
    if (m_json) {
      const std::string text = m_document.dump(2) + '\n';
      std::fwrite(text.data(), 1, text.size(), stdout);
    }
    return m_failed ? kSomeUnreadable : kSuccess;
  }

 private:
  bool m_json;
  bool m_first = true;
  bool m_failed = false;
  Json m_document{{"modules", Json::array()}, {"errors", Json::array()}};
};

}  // namespace

ExitCode Show(const std::vector<std::string>& files, bool json) {
  const CComPtr<IMergeModule2> module = CreateModule();
  Report report(json);
  for (const std::string& file : files) {
    try {
      report.Add(file, Read(*module, file));
    } catch (const ServerFailure& failure) {
      report.Add(file, "", failure);
    }
  }
  return report.Finish();
}

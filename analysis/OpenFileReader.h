#pragma once

#include <memory>
#include <optional>
#include <string>
#include <unordered_map>

#include "analysis/LoadProgress.h"
#include "analysis/ModuleContents.h"
#include "com/error/com_exception.h"
#include "com/frame/ComObject.h"
#include "idl/openfiles.h"

namespace qm::analysis {

/// Reads modules while a catalog has their files open, and keeps them until the set asks. Opening a
/// file takes longer than reading it.
class OpenFileReader : public IOpenFileReader, public com::ComObjectRoot {
 public:
  using InterfaceMap = com::InterfaceMap<com::Via<IOpenFileReader, IOpenFileReader>>;

  virtual ~OpenFileReader() = default;

  void Init(std::shared_ptr<LoadProgress> progress) { m_progress = std::move(progress); }

  /// What the modules of the load have in common.
  merge::SharedStreams& Shared() noexcept { return m_shared; }

  // IOpenFileReader
  STDMETHOD(BeginFiles)(ULONG count) override;
  STDMETHOD(ReadFile)(const WCHAR* path, void* file) override;

  /// Raises the failure of the progress that ended the catalog's refresh, if one did.
  void RaiseFailure() const;

  /// Returns what was read of the file at a full path, in UTF-8; no value if that must still be
  /// done. Gives it away.
  std::optional<ModuleContents> Take(const std::string& path);

 private:
  std::shared_ptr<LoadProgress> m_progress;
  std::unique_ptr<const com_exception> m_failure;
  long m_count = 0;  ///< of the files
  long m_begun = 0;
  merge::SharedStreams m_shared;
  std::unordered_map<std::string, ModuleContents> m_contents;  ///< by path
};

}  // namespace qm::analysis

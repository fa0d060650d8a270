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

/// Reads modules while a catalog has their files open, and keeps them until LoadSet takes them.
/// This saves opening each file again, which takes longer than reading it.
class OpenFileReader : public IOpenFileReader, public com::ComObjectRoot {
 public:
  using InterfaceMap = com::InterfaceMap<com::Via<IOpenFileReader, IOpenFileReader>>;

  virtual ~OpenFileReader() = default;

  void Init(std::shared_ptr<LoadProgress> progress) { m_progress = std::move(progress); }

  /// The data that several modules of the load have.
  merge::SharedStreams& Shared() noexcept { return m_shared; }

  // IOpenFileReader
  STDMETHOD(BeginFiles)(ULONG count) override;
  STDMETHOD(ReadFile)(const WCHAR* path, void* file) override;

  /// Raises the failure to report progress that ended the catalog's refresh, if there was one.
  void RaiseFailure() const;

  /// Removes and returns what was read of the file at `path`, a full path in UTF-8; no value if the
  /// file was not read.
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

#include "analysis/ModuleContents.h"

#include <optional>
#include <string>

#include "com/error/win32_exception.h"
#include "image/Damage.h"
#include "image/Database.h"
#include "merge/ReadModule.h"
#include "msidb/CodePageText.h"
#include "text/Utf.h"

namespace qm::analysis {

namespace {

std::optional<std::string> DecodeText(std::string_view bytes, std::uint32_t codePage) {
  if (codePage != CP_ACP && !::IsValidCodePage(codePage)) {
    return std::nullopt;
  }
  return text::ToUtf8(msidb::DecodeCodePageText(bytes, codePage));
}

/// If the module has a failure, sets `code` to its Win32 error code; otherwise `code` is undefined.
merge::Module ReadDatabase(msidb::ModuleFile& file, merge::SharedStreams& shared, DWORD& code) {
  try {
    code = ERROR_FILE_CORRUPT;
    image::Database database(file);
    return merge::ReadModule(database, DecodeText, &shared);
  } catch (const image::Damage& damage) {
    merge::Module module;
    module.failure = damage.what();
    if (damage.Part() == image::DamagedPart::NoDatabase) {
      code = ERROR_OPEN_FAILED;
    }
    return module;
  }
}

}  // namespace

ModuleContents ReadModuleContents(msidb::ModuleFile& file, std::string_view path,
                                  merge::SharedStreams& shared) {
  shared.BeginModule(path);
  DWORD code = ERROR_SUCCESS;
  merge::Module module = ReadDatabase(file, shared, code);
  file.RequireUnchanged();
  const HRESULT hr = module.failure.empty() ? S_OK : HResultFromCode(code);
  return {std::move(module), hr};
}

}  // namespace qm::analysis

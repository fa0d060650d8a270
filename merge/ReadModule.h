#pragma once

#include "image/ByteSource.h"
#include "image/Database.h"
#include "merge/Module.h"

namespace qm::merge {

/// Reads a module from the bytes of its file: identity, summary, every table once, and what merging
/// needs from them. `path`, `origin`, `displayName` and the state of the gallery are left to the
/// caller. Damage is not thrown: Module::failure describes the first one, and the module has what
/// could be read. Throws what the source throws, and std::bad_alloc.
///
/// The first row of ModuleSignature is the module's own. A null language is INT32_MIN, as in the
/// catalog. See ModuleTables for `shared`.
Module ReadModule(image::ByteSource& source, const DecodeText& decode,
                  SharedStreams* shared = nullptr);

/// The same from an open database, whose summary information alone may be read afterwards.
Module ReadModule(image::Database& database, const DecodeText& decode,
                  SharedStreams* shared = nullptr);

/// A DecodeText that does not depend on the system. Decodes ASCII, UTF-8, Windows-1252 and ISO
/// 8859-1, and treats the code page of the system as Windows-1252. For tests and other systems; on
/// Windows, pass one that asks the system.
std::optional<std::string> DecodeCommonCodePage(std::string_view bytes, std::uint32_t codePage);

}  // namespace qm::merge

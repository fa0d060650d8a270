#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "merge/MergeRules.h"
#include "merge/ModuleTables.h"

namespace qm::merge {

// A merge module with all its facts, for the rules of merging, for searches and for display. All
// texts are UTF-8.
//
// The string_views in these structs point into the texts of Module::tables or, for a module without
// tables, into texts that its maker keeps alive. Copies of a Module share the tables, so a view is
// valid as long as any copy exists. Tables are immutable, so several threads may read copies of one
// module.

/// A row of ModuleSignature, or the owner of a row of another table.
struct ModuleSignature {
  std::string moduleId;
  std::optional<long> language;
  std::string version = {};
};

/// A file that a module delivers: a row of its File table.
struct DeliveredFile {
  std::string_view name;       ///< long name
  std::string_view directory;  ///< of its component: a key of the Directory table; empty if unknown
  std::string_view shortName = {};  ///< empty if the table has one name only
  std::string_view key = {};
  std::string_view version = {};
  std::optional<long> size = {};  ///< in bytes
  std::string_view language = {};
  std::optional<long> sequence = {};
  std::string_view component = {};
};

/// Makes a delivered file. `fileName` is as in the File table: "SHORT.TXT|long name.txt", or one
/// name.
DeliveredFile MakeDeliveredFile(std::string_view fileName, std::string_view directory,
                                std::string_view key, std::string_view version,
                                std::optional<long> size) noexcept;

/// A row of the Component table.
struct Component {
  std::string_view key;
  std::string_view componentId;  ///< "{GUID}"; empty for a component that is not registered
  std::string_view directory;    ///< a key of the Directory table
  std::optional<long> attributes;
  std::string_view condition;
  std::string_view keyPath;

  /// Returns whether the component is for the 64-bit part of the system.
  bool Is64Bit() const noexcept { return (attributes.value_or(0) & 0x100) != 0; }
};

/// A row of the Directory table.
struct Directory {
  std::string_view key;
  std::string_view parent;      ///< empty for the root
  std::string_view defaultDir;  ///< as in the table: "target:source", each "short|long"
};

/// A row of the CustomAction table.
struct CustomAction {
  std::string_view name;
  std::optional<long> type;
  std::string_view source;
  std::string_view target;
};

/// What a list of modules knows about one of them. ReadModule sets the identity and the package
/// code from the file; the caller sets the rest.
struct ModuleListing {
  std::string key;  ///< "ID:language"
  std::string moduleId;
  long language = 0;
  std::string version;
  std::string displayName;
  std::string packageCode;     ///< "{GUID}"
  std::string path;            ///< of the module file; set by whoever lists the module
  std::string origin;          ///< the search folder; empty for a gallery module
  bool isFromGallery = false;  ///< listed because a description of the object gallery names it
  bool isPresent = true;       ///< false for a gallery module whose file is not on this machine
  bool needsDownload = false;  ///< the module or some of its files
};

struct Module : ModuleListing {
  // ---- From the summary information

  std::string subject;
  std::string author;
  std::string comments;
  std::string platform;         ///< "Intel", "x64", ...; empty if the template names no platform
  std::vector<long> languages;  ///< of the template, in its order
  std::optional<long> minimumInstaller;  ///< 100 times the lowest version, such as 200 for 2.0

  // ---- State

  /// Why the file cannot be read, or not completely: one sentence. Empty if all of it was read.
  /// What could be read is there in any case.
  std::string failure;
  /// What differs between the file and the catalog that lists it; empty if nothing does. Set by
  /// whoever compares them.
  std::string change;

  // ---- What merging needs, in the order of the file. A module that is not present has what its
  // gallery description lists.

  std::vector<Requirement> requirements;  ///< rows of carried modules included: see Requirement
  std::vector<Exclusion> exclusions;      ///< the same
  /// The modules that were merged into this one when it was made: the other rows of its
  /// ModuleSignature table.
  std::vector<ModuleSignature> carried;
  std::vector<DeliveredFile> files;
  std::vector<Component> components;
  std::vector<Directory> directories;
  std::vector<CustomAction> customActions;

  /// Every table of the file; null if the file was not read.
  std::shared_ptr<const ModuleTables> tables;

  /// Returns a table by its name, case-sensitive; null if the module has no such table.
  const Table* FindTable(std::string_view name) const noexcept {
    return tables ? tables->Find(name) : nullptr;
  }
};

/// Returns how sentences name a module: by its key, or by its path if it has no ID; "(a module
/// without ID and path)" if it has neither.
const std::string& GetNameInSentence(const Module& module) noexcept;

/// Returns how sentences name the file of a module: by its path, or as above if it has none.
const std::string& GetFileInSentence(const Module& module) noexcept;

/// Makes the key "ID:language".
std::string MakeModuleKey(std::string_view moduleId, long language);

}  // namespace qm::merge

#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>

#include "merge/Module.h"

namespace qm::merge {

/// Why a walk up the Directory table ended.
enum class FolderEnd {
  Root,         ///< at a root: a predefined folder, TARGETDIR, a property, or a full path
  MissingRow,   ///< a directory has no row
  Circle,       ///< a directory lies below itself
  RunTime,      ///< at a root, but the path has properties that get their values at run time
  LimitReached  ///< more rows or bytes than TargetFolders allows: root and path are empty
};

/// Where an installer makes a folder of a module: a root, and a path below it. The root is a
/// property, so that each kind of project can spell it in its own way.
struct TargetFolder {
  /// The property at the root, without brackets: "SystemFolder", "TARGETDIR", the key of another
  /// root row, or the key whose row is missing. Empty if `path` is a full path, and after a circle.
  std::string root;
  /// The rest: "drivers\etc". Neither begins nor ends with a backslash. Empty for the root itself.
  /// A part that only the installer can resolve stays as the module has it, such as "[MYPROPERTY]":
  /// see FolderEnd::RunTime.
  std::string path;
  FolderEnd end = FolderEnd::Root;
  bool isPredefined = false;   ///< `root` is a folder that the installer defines
  bool isSetByAction = false;  ///< a custom action determines the folder or one on the way up
  /// The key of the row on the way that the user of the module redirects: it lies directly below
  /// TARGETDIR, and the merge attaches it to the folder that the user names. Empty if there is no
  /// such row.
  std::string redirected = {};
  /// The configurable item through which the user of the module sets a row on the way
  /// (ModuleSubstitution). Empty if there is no such item.
  std::string item = {};

  /// Returns whether the user of the module decides where the folder is.
  bool IsRedirected() const noexcept { return !redirected.empty() || !item.empty(); }
};

/// Returns whether a property is a folder that the installer defines: ProgramFilesFolder,
/// System64Folder, DesktopFolder and so on. Case-sensitive, as properties are. TARGETDIR is not one
/// of them.
bool IsPredefinedFolder(std::string_view property) noexcept;

/// Resolves directories of a module as an installer does when the module has been merged:
///
/// - A key whose part before the first dot is a predefined folder is that folder, whatever its
///   DefaultDir and its parent: merging adds an action that sets it.
/// - A custom action that sets the property of a directory (types 51 and 35) takes precedence over
///   the key and the rows. Its text may begin with a property or a directory:
///   "[WindowsFolder]winsxs". Of several actions for a property, the last one to run is used, but
///   those without a condition take precedence. Actions that do not run, and those of type 51 that
///   run after the installer has resolved its paths, are ignored; see ActionSequence. Further
///   properties in the text get the values that the module has given them by then, if these contain
///   no properties and are not full paths.
/// - A value in the Property table takes precedence over the rows.
/// - Otherwise the name is the target part of DefaultDir, in its long form. "." is the parent.
/// - The walk ends at the row without a parent, whose key is the root: usually TARGETDIR. What lies
///   below that goes where the user of the module wants it.
///
/// msidb/DirectoryResolution walks in another way, as the published interfaces demand: it knows
/// neither custom actions nor 64-bit folders, ends at "." folders below TARGETDIR, omits that root,
/// recognises a predefined folder only if a row with the plain key exists too, and ignores its
/// case.
///
/// Nothing in the module is trusted: a walk ends at a circle, after 1,000 rows, or after 32,767
/// bytes.
class TargetFolders {
 public:
  /// `module` must outlive the object.
  explicit TargetFolders(const Module& module);

  /// Returns the folder of a key of the Directory table. Caches nothing; takes time proportional to
  /// the length of the walk.
  TargetFolder Resolve(std::string_view directory) const;

 private:
  class Walk;

  using TextMap = std::unordered_map<std::string_view, std::string_view>;

  /// The text that an action or a property sets for a folder.
  struct FolderText {
    std::string_view text;
    double position;    ///< of the action, see ActionSequence
    bool isPartOfPath;  ///< neither a full path nor one that has properties in it
  };
  using ActionTexts = std::unordered_map<std::string_view, std::vector<FolderText>>;

  static FolderText MakeText(std::string_view text, double position);
  void ReadActions(const Module& module);
  void ReadProperties(const Module& module);
  void ReadItems(const Module& module);

  std::unordered_map<std::string_view, const Directory*> m_directories;
  ActionTexts m_actions;  ///< by property, in ascending order of position
  std::unordered_map<std::string_view, FolderText> m_properties;  ///< values, by property
  TextMap m_items;  ///< configurable items by property
};

/// Returns how a root is spelled, such as "[SystemFolder]" or "<WINSYSDIR>"; empty if there is no
/// spelling for it.
using SpellRoot = std::function<std::string(std::string_view root)>;

/// Formats a folder: "[SystemFolder]drivers". A root without a spelling is put into brackets.
/// Without `spell`, all are.
std::string FormatTargetFolder(const TargetFolder& folder, const SpellRoot& spell = nullptr);

}  // namespace qm::merge

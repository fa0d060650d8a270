#include "merge/TargetFolders.h"

#include <algorithm>
#include <deque>
#include <iterator>
#include <limits>
#include <string>
#include <unordered_set>

#include "merge/ActionSequence.h"

namespace qm::merge {

namespace {

constexpr std::size_t kMaxRows = 1000;
constexpr std::size_t kMaxPathSize = 32767;
/// The same for the text that an action or a property sets for a folder. No installer accepts
/// longer ones, and folders that share a long text would take more work than the size of the file
/// justifies.
constexpr std::size_t kMaxTextSize = 1024;
constexpr std::string_view kTargetDir = "TARGETDIR";

/// The folders that the installer defines, sorted. GlobalAssemblyCache, which authoring tools know
/// too, is not one of them: an installer makes a folder of that name below TARGETDIR.
constexpr std::string_view kPredefinedFolders[] = {
    "AdminToolsFolder",   "AppDataFolder",        "CommonAppDataFolder", "CommonFiles64Folder",
    "CommonFilesFolder",  "DesktopFolder",        "FavoritesFolder",     "FontsFolder",
    "LocalAppDataFolder", "MyPicturesFolder",     "NetHoodFolder",       "PersonalFolder",
    "PrintHoodFolder",    "ProgramFiles64Folder", "ProgramFilesFolder",  "ProgramMenuFolder",
    "RecentFolder",       "SendToFolder",         "StartMenuFolder",     "StartupFolder",
    "System16Folder",     "System64Folder",       "SystemFolder",        "TempFolder",
    "TemplateFolder",     "WindowsFolder",        "WindowsVolume"};

std::string_view RemoveSuffix(std::string_view key) noexcept {
  return key.substr(0, key.find('.'));
}

std::string_view TrimBackslashes(std::string_view path) noexcept {
  const std::size_t first = std::min(path.find_first_not_of('\\'), path.size());
  return path.substr(first, path.find_last_not_of('\\') + 1 - first);
}

/// Removes backslashes from the end of a full path, except for that of "C:\" itself.
std::string_view TrimFullPath(std::string_view path) noexcept {
  const std::size_t end = path.find_last_not_of('\\') + 1;
  return path.substr(0, end > 0 && end < path.size() && path[end - 1] == ':' ? end + 1 : end);
}

/// Returns the long name of the target part of a DefaultDir, "target:source", each "short|long".
std::string_view GetTargetName(std::string_view defaultDir) noexcept {
  const std::string_view target = defaultDir.substr(0, defaultDir.find(':'));
  const std::size_t bar = target.find('|');
  return bar == std::string_view::npos ? target : target.substr(bar + 1);
}

/// Returns the text of a column of a row; empty if the table has no such column.
std::string_view GetText(const Table& table, std::size_t row, std::optional<std::size_t> column) {
  return column ? table.Text(row, *column) : std::string_view();
}

}  // namespace

bool IsPredefinedFolder(std::string_view property) noexcept {
  return std::binary_search(std::begin(kPredefinedFolders), std::end(kPredefinedFolders), property);
}

/// A walk from a directory to its root, which prepends the name of each row to the path.
class TargetFolders::Walk {
 public:
  explicit Walk(const TargetFolders& folders) : m_folders(folders) {}

  TargetFolder Run(std::string_view directory) {
    m_key = directory;
    bool isAtEnd = false;
    for (std::size_t row = 0; row < kMaxRows && m_pathSize <= kMaxPathSize && !isAtEnd; ++row) {
      isAtEnd = EnterKey();
    }
    if (!isAtEnd || m_pathSize > kMaxPathSize) {
      m_folder.root.clear();
      m_names.clear();
      m_pathSize = 0;
      m_folder.end = FolderEnd::LimitReached;
    } else if (m_isRunTime && m_folder.end == FolderEnd::Root) {
      m_folder.end = FolderEnd::RunTime;
    }
    JoinNames();
    return std::move(m_folder);
  }

 private:
  /// Handles m_key. Returns true if the walk ends there; otherwise, sets m_key to the next key.
  bool EnterKey() {
    RecordItem();
    // The text of an action may refer to the folder's value without that action.
    if (const FolderText* const action = FindAction(m_key);
        action && m_usedActions.insert(action).second) {
      m_folder.isSetByAction = true;
      m_now = action->position;
      return EnterText(action->text);
    }
    const std::string_view plain = RemoveSuffix(m_key);
    if (IsPredefinedFolder(plain)) {
      m_folder.isPredefined = true;
      return EndAtRoot(plain);
    }
    if (!m_visited.insert(m_key).second) {
      m_folder.end = FolderEnd::Circle;
      return true;
    }
    if (const auto value = m_folders.m_properties.find(m_key);
        value != m_folders.m_properties.end()) {
      return EnterText(value->second.text);
    }
    return EnterRow();
  }

  /// Returns the last action up to m_now that sets a property, skipping one that the walk has
  /// already used; null if there is none.
  const FolderText* FindAction(std::string_view property) const {
    const auto found = m_folders.m_actions.find(property);
    if (found == m_folders.m_actions.end()) {
      return nullptr;
    }
    const std::vector<FolderText>& texts = found->second;
    auto text = std::upper_bound(
        texts.begin(), texts.end(), m_now,
        [](double now, const FolderText& action) { return now < action.position; });
    if (text != texts.begin() && m_usedActions.count(&*(text - 1)) > 0) {
      --text;
    }
    return text == texts.begin() ? nullptr : &*(text - 1);
  }

  void RecordItem() {
    const auto item = m_folders.m_items.find(m_key);
    if (item != m_folders.m_items.end() && m_folder.item.empty()) {
      m_folder.item = item->second;
    }
  }

  bool EnterRow() {
    const auto found = m_folders.m_directories.find(m_key);
    if (found == m_folders.m_directories.end()) {
      // The product has TARGETDIR, and a property that an action uses need not be a directory.
      if (m_key != kTargetDir && !m_isProperty) {
        m_folder.end = FolderEnd::MissingRow;
      }
      return EndAtRoot(m_key);
    }
    const Directory& row = *found->second;
    if (row.parent.empty() || row.parent == row.key) {
      return EndAtRoot(row.key);
    }
    const std::string_view name = GetTargetName(row.defaultDir);
    if (name != ".") {
      Prepend(name);
    }
    if (row.parent == kTargetDir) {
      m_folder.redirected = row.key;
    }
    m_key = row.parent;
    m_isProperty = false;
    return false;
  }

  /// Continues with the text of an action or a property: "[WindowsFolder]winsxs".
  bool EnterText(std::string_view text) {
    if (text.size() > kMaxTextSize) {
      m_pathSize = kMaxPathSize + 1;
      return true;
    }
    const std::size_t close = text.find(']');
    if (text.front() != '[' || close == std::string_view::npos) {
      PrependUntrimmed(TrimFullPath(FillIn(text)));
      return true;
    }
    Prepend(FillIn(text.substr(close + 1)));
    m_key = text.substr(1, close - 1);
    m_isProperty = true;
    return false;
  }

  /// Replaces properties in a text by the values that the module gives them. Folders are left
  /// alone: their values are full paths, which cannot be parts of other paths.
  std::string_view FillIn(std::string_view text) {
    if (text.find('[') == std::string_view::npos) {
      return text;
    }
    std::string filled;
    while (!text.empty() && filled.size() <= kMaxPathSize) {
      const std::size_t open = std::min(text.find('['), text.size());
      filled += text.substr(0, open);
      text.remove_prefix(open);
      const std::size_t close = text.find(']');
      if (close == std::string_view::npos) {
        filled += text;
        break;
      }
      if (const auto value = FindValue(text.substr(1, close - 1))) {
        filled += *value;
      } else {
        filled += text.substr(0, close + 1);
        m_isRunTime = true;
      }
      text.remove_prefix(close + 1);
    }
    return m_texts.emplace_back(std::move(filled));
  }

  /// Returns the value of a property, if the module alone determines it and it is a part of a path.
  std::optional<std::string_view> FindValue(std::string_view property) const {
    const FolderText* value = FindAction(property);
    if (!value) {
      const auto found = m_folders.m_properties.find(property);
      if (found == m_folders.m_properties.end()) {
        return std::nullopt;
      }
      value = &found->second;
    }
    return value->isPartOfPath && m_folders.m_directories.count(property) == 0
               ? std::optional(value->text)
               : std::nullopt;
  }

  bool EndAtRoot(std::string_view root) {
    m_folder.root = root;
    return true;
  }

  void Prepend(std::string_view names) {
    names = TrimBackslashes(names);
    if (names.empty()) {
      return;
    }
    PrependUntrimmed(names);
  }

  void PrependUntrimmed(std::string_view names) {
    m_names.push_back(names);
    m_pathSize += names.size() + 1;
  }

  void JoinNames() {
    m_folder.path.reserve(m_pathSize);
    for (auto names = m_names.rbegin(); names != m_names.rend(); ++names) {
      m_folder.path += m_folder.path.empty() || m_folder.path.back() == '\\' ? "" : "\\";
      m_folder.path += *names;
    }
  }

  const TargetFolders& m_folders;
  double m_now = std::numeric_limits<double>::infinity();  ///< position of the current text
  std::unordered_set<const FolderText*> m_usedActions;
  std::unordered_set<std::string_view> m_visited;
  std::string_view m_key;
  bool m_isProperty = false;              ///< m_key comes from the text of an action or a property
  bool m_isRunTime = false;               ///< a text has a property without a known value
  std::deque<std::string> m_texts;        ///< that were filled in; m_names refers to them
  std::vector<std::string_view> m_names;  ///< of the path, the last one first
  std::size_t m_pathSize = 0;
  TargetFolder m_folder;
};

TargetFolders::TargetFolders(const Module& module) {
  m_directories.reserve(module.directories.size());
  for (const Directory& directory : module.directories) {
    m_directories.emplace(directory.key, &directory);
  }
  ReadActions(module);
  ReadProperties(module);
  ReadItems(module);
}

TargetFolders::FolderText TargetFolders::MakeText(std::string_view text, double position) {
  const std::string_view part = text.substr(0, kMaxTextSize + 1);
  return {text, position,
          part.size() <= kMaxTextSize && part.substr(0, 2) != "\\\\" &&
              part.find_first_of("[:") == std::string_view::npos};
}

void TargetFolders::ReadActions(const Module& module) {
  constexpr long kBaseType = 0x3F;
  constexpr long kSetProperty = 51;
  constexpr long kSetDirectory = 35;
  struct PlacedAction {
    ActionSequence::Place place;
    const CustomAction* action;
  };
  std::vector<PlacedAction> actions;
  const ActionSequence sequence(module);
  for (const CustomAction& action : module.customActions) {
    const long type = action.type.value_or(0) & kBaseType;
    const auto place = sequence.IsKnown() ? sequence.Find(action.name)
                                          : std::optional(ActionSequence::Place{0, false});
    if (!place || action.target.empty()) {
      continue;
    }
    const bool isTooLate = place->position > sequence.CostFinalize();
    if (type == kSetDirectory || (type == kSetProperty && !isTooLate)) {
      actions.push_back({*place, &action});
    }
  }
  std::sort(actions.begin(), actions.end(), [](const PlacedAction& a, const PlacedAction& b) {
    return a.place.position != b.place.position ? a.place.position < b.place.position
                                                : a.action < b.action;
  });
  ActionTexts onCondition;
  for (const auto& [place, action] : actions) {
    std::vector<FolderText>& texts =
        (place.isConditional ? onCondition : m_actions)[action->source];
    // Which of two actions with the same number runs first is not defined, so the first one is
    // kept.
    if (texts.empty() || texts.back().position != place.position) {
      texts.push_back(MakeText(action->target, place.position));
    }
  }
  m_actions.merge(onCondition);  // only properties that no other action sets
}

void TargetFolders::ReadProperties(const Module& module) {
  const Table* const table = module.FindTable("Property");
  const auto property = table ? table->FindColumn("Property") : std::nullopt;
  const auto value = table ? table->FindColumn("Value") : std::nullopt;
  if (!property || !value) {
    return;
  }
  for (std::size_t row = 0; row < table->RowCount(); ++row) {
    const std::string_view key = table->Text(row, *property);
    // Other properties than those of directories matter only if an action refers to them.
    if (!table->Text(row, *value).empty() && (m_directories.count(key) > 0 || !m_actions.empty())) {
      m_properties.try_emplace(key, MakeText(table->Text(row, *value), 0));
    }
  }
}

void TargetFolders::ReadItems(const Module& module) {
  const Table* const table = module.FindTable("ModuleSubstitution");
  if (!table) {
    return;
  }
  TextMap sources;  // of actions, by name
  for (const CustomAction& action : module.customActions) {
    sources.emplace(action.name, action.source);
  }
  const auto tableName = table->FindColumn("Table");
  const auto key = table->FindColumn("Row");
  const auto value = table->FindColumn("Value");
  for (std::size_t row = 0; row < table->RowCount(); ++row) {
    const std::string_view text = GetText(*table, row, value);
    const std::size_t begin = text.find("[=");
    const std::size_t end = text.find(']', begin == std::string_view::npos ? 0 : begin);
    if (begin == std::string_view::npos || end == std::string_view::npos) {
      continue;
    }
    const std::string_view item = text.substr(begin + 2, end - begin - 2);
    const std::string_view name = GetText(*table, row, tableName);
    const std::string_view target = GetText(*table, row, key);
    if (name == "Directory" || name == "Property") {
      m_items.emplace(target, item);
    } else if (const auto source = sources.find(target);
               name == "CustomAction" && source != sources.end()) {
      m_items.emplace(source->second, item);
    }
  }
}

TargetFolder TargetFolders::Resolve(std::string_view directory) const {
  return Walk(*this).Run(directory);
}

std::string FormatTargetFolder(const TargetFolder& folder, const SpellRoot& spell) {
  if (folder.root.empty()) {
    return folder.path;
  }
  std::string text = spell ? spell(folder.root) : std::string();
  if (text.empty()) {
    text = '[' + folder.root + ']';
  }
  return text + folder.path;
}

}  // namespace qm::merge

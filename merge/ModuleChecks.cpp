#include <algorithm>
#include <map>
#include <unordered_map>

#include "merge/Checks.h"
#include "merge/Hashing.h"

namespace qm::merge {

namespace {

/// Returns whether the installer accepts a text as a version: up to four numbers below 65,536 with
/// dots between them.
bool IsVersion(std::string_view text) noexcept {
  constexpr unsigned kMaxParts = 4;
  constexpr unsigned kMaxNumber = 65535;
  unsigned parts = 1;
  unsigned number = 0;
  bool hasDigit = false;
  for (const char character : text) {
    if (character == '.') {
      if (!hasDigit || ++parts > kMaxParts) {
        return false;
      }
      number = 0;
      hasDigit = false;
    } else if (character >= '0' && character <= '9') {
      number = number * 10 + static_cast<unsigned>(character - '0');
      hasDigit = true;
      if (number > kMaxNumber) {
        return false;
      }
    } else {
      return false;
    }
  }
  return hasDigit;
}

/// Finds malformed versions, which the installer compares as if parts were missing.
class VersionCheck {
 public:
  VersionCheck(const CheckedModules& modules, FindingList& findings)
      : m_modules(modules), m_findings(findings) {}

  void Run(size_t position) {
    const Module& module = m_modules.At(position);
    if (!module.FindTable("ModuleSignature")) {
      return;
    }
    Check(position, module.version, {"ModuleSignature", "Version"}, "has");
    for (const ModuleSignature& carried : module.carried) {
      Check(position, carried.version, {"ModuleSignature", "Version"},
            "carries " + carried.moduleId + " with");
    }
    for (const Requirement& requirement : module.requirements) {
      if (!requirement.version.empty()) {
        Check(position, requirement.version, {"ModuleDependency", "RequiredVersion"},
              "needs " + requirement.moduleId + " with");
      }
    }
    for (const Exclusion& exclusion : module.exclusions) {
      const std::string verb = "excludes " + exclusion.moduleId + " with";
      if (!exclusion.minVersion.empty()) {
        Check(position, exclusion.minVersion, {"ModuleExclusion", "ExcludedMinVersion"}, verb);
      }
      if (!exclusion.maxVersion.empty()) {
        Check(position, exclusion.maxVersion, {"ModuleExclusion", "ExcludedMaxVersion"}, verb);
      }
    }
    CheckFileVersions(position);
  }

 private:
  struct Place {
    const char* table;
    const char* column;
  };

  void Check(size_t position, std::string_view version, const Place& place,
             const std::string& verb) {
    if (!IsVersion(version) && m_findings.Admit(kMalformedVersion)) {
      Finding& finding = m_findings.AddForCell(
          kMalformedVersion, {position, place.table, "", place.column, version},
          m_findings.NameOf(position) + ' ' + verb + " version " + QuoteShort(version) +
              ", which is not a version");
      finding.versions = {Shorten(version)};
    }
  }

  /// The version of a file may also be the key of another file, whose version it then has.
  void CheckFileVersions(size_t position) {
    const Module& module = m_modules.At(position);
    for (const DeliveredFile& file : module.files) {
      if (file.version.empty() || IsVersion(file.version) ||
          m_modules.HasRow("File", "File", file.version) || !m_findings.Admit(kMalformedVersion)) {
        continue;
      }
      Finding& finding =
          m_findings.AddForFile(kMalformedVersion, position, file, "Version", file.version,
                                "version " + QuoteShort(file.version) +
                                    ", which is neither a version nor the key of a file");
      finding.versions = {Shorten(file.version)};
    }
  }

  const CheckedModules& m_modules;
  FindingList& m_findings;
};

std::string FormatLanguages(const std::vector<long>& languages) {
  std::vector<std::string> texts;
  texts.reserve(languages.size());
  for (const long language : languages) {
    texts.push_back(std::to_string(language));
  }
  return JoinSome(texts, ",");
}

void CheckPresence(const CheckedModules& modules, size_t position, FindingList& findings) {
  const Module& module = modules.At(position);
  if ((module.needsDownload || !module.isPresent) && findings.Admit(kNeedsDownload)) {
    findings.Add(kNeedsDownload, {position},
                 findings.NameOf(position) +
                     (module.isPresent ? " is on this machine, but files that belong to it are "
                                         "missing, or the object gallery has a newer version"
                                       : " is in the object gallery, but its file is not on this "
                                         "machine"));
  }
}

/// The installer opens a module for a language if its template has the language, its primary
/// language, or 0.
void CheckTemplate(const CheckedModules& modules, size_t position, FindingList& findings) {
  const Module& module = modules.At(position);
  const bool isSupported =
      module.languages.empty() ||
      std::any_of(module.languages.begin(), module.languages.end(),
                  [&](long language) { return MatchesLanguage(language, module.language); });
  if (!isSupported && module.FindTable("ModuleSignature") && findings.Admit(kTemplateLanguage)) {
    const std::string languages = FormatLanguages(module.languages);
    Finding& finding =
        findings.Add(kTemplateLanguage, {position},
                     findings.NameOf(position) + " is signed for language " +
                         std::to_string(module.language) + ", but its template names " + languages);
    finding.values = {{position, "Language", std::to_string(module.language)},
                      {position, "Template", languages}};
  }
}

/// Finds several modules of one ID.
class IdentityCheck {
 public:
  IdentityCheck(const CheckedModules& modules, FindingList& findings)
      : m_modules(modules), m_findings(findings) {}

  void Run() {
    for (const size_t position : m_modules.Scope()) {
      if (!m_modules.At(position).moduleId.empty()) {
        m_byIdentity[m_modules.IdentityOf(position)].push_back(position);
      }
    }
    for (auto& [identity, positions] : m_byIdentity) {
      if (positions.size() > 1) {
        std::sort(positions.begin(), positions.end());
        CheckOneId(positions);
      }
    }
  }

 private:
  void CheckOneId(const std::vector<size_t>& positions) {
    std::map<std::string, std::vector<size_t>> byKey;
    std::map<long, size_t> byLanguage;
    for (const size_t position : positions) {
      byKey[text::FoldCase(m_modules.At(position).key)].push_back(position);
      byLanguage.emplace(m_modules.At(position).language, position);
    }
    for (const auto& [key, modules] : byKey) {
      AddDuplicate(modules);
    }
    if (m_modules.IsMerge() && byLanguage.size() > 1) {
      AddLanguages(positions, byLanguage);
    }
    AddVersions(positions);
  }

  void AddDuplicate(const std::vector<size_t>& positions) {
    if (positions.size() < 2 || !m_findings.Admit(kDuplicateModuleKey)) {
      return;
    }
    std::vector<std::string> places;
    for (const size_t position : positions) {
      const Module& module = m_modules.At(position);
      places.push_back(GetFileInSentence(module) + " (version " + module.version + ')');
    }
    Finding& finding =
        m_findings.Add(kDuplicateModuleKey, positions,
                       m_findings.NameOf(positions.front()) + " is in the set " +
                           std::to_string(positions.size()) + " times: " + JoinSome(places, ", "));
    AddVersionValues(positions, finding);
    if (!m_modules.IsMerge()) {
      LimitSeverity(finding, Severity::Warning);
    }
  }

  void AddLanguages(const std::vector<size_t>& positions, const std::map<long, size_t>& languages) {
    if (!m_findings.Admit(kSeveralLanguages)) {
      return;
    }
    std::vector<size_t> modules;
    modules.reserve(languages.size());
    for (const auto& [language, position] : languages) {
      modules.push_back(position);
    }
    Finding& finding = m_findings.Add(
        kSeveralLanguages, modules,
        m_modules.At(positions.front()).moduleId + " would be merged in " +
            std::to_string(languages.size()) +
            " languages, of which a package takes one: " + m_findings.JoinNames(modules, ", "));
    for (const size_t position : finding.positions) {
      finding.values.push_back(
          {position, "Language", std::to_string(m_modules.At(position).language)});
    }
  }

  void AddVersions(const std::vector<size_t>& positions) {
    std::vector<std::string> versions;
    versions.reserve(positions.size());
    for (const size_t position : positions) {
      versions.push_back(m_modules.At(position).version);
    }
    const auto isLower = [](const auto& a, const auto& b) { return CompareVersionTexts(a, b) < 0; };
    const auto isSame = [](const auto& a, const auto& b) { return CompareVersionTexts(a, b) == 0; };
    std::stable_sort(versions.begin(), versions.end(), isLower);
    versions.erase(std::unique(versions.begin(), versions.end(), isSame), versions.end());
    if (versions.size() < 2 || !m_findings.Admit(kSeveralVersions)) {
      return;
    }
    Finding& finding = m_findings.Add(
        kSeveralVersions, positions,
        m_modules.At(positions.front()).moduleId +
            (m_modules.IsMerge() ? " would be merged in " : " is in the set in ") +
            std::to_string(versions.size()) + " versions: " + JoinSome(versions, ", "));
    AddVersionValues(positions, finding);
    versions.resize(std::min(versions.size(), FindingList::kMaxModules));
    finding.versions = std::move(versions);
    if (!m_modules.IsMerge()) {
      LimitSeverity(finding, Severity::Note);
    }
  }

  void AddVersionValues(const std::vector<size_t>& positions, Finding& finding) const {
    const size_t count = std::min(positions.size(), FindingList::kMaxModules);
    for (size_t i = 0; i < count; ++i) {
      finding.values.push_back({positions[i], "Version", m_modules.At(positions[i]).version});
    }
  }

  const CheckedModules& m_modules;
  FindingList& m_findings;
  std::map<size_t, std::vector<size_t>> m_byIdentity;
};

/// Finds modules for different 64-bit platforms: a package is for one of them. Names one module of
/// each platform, so that a plan learns which of them do not go together.
void CheckMergedPlatforms(const CheckedModules& modules, FindingList& findings) {
  const auto byPlatform = modules.Set().GroupBy64BitPlatform(modules.Scope());
  if (byPlatform.size() < 2 || !findings.Admit(kPlatformConflict)) {
    return;
  }
  std::vector<size_t> positions;
  std::vector<std::string> texts;
  std::vector<FindingValue> values;
  for (const auto& [platform, ofPlatform] : byPlatform) {
    const size_t first = ofPlatform.front();
    const size_t more = ofPlatform.size() - 1;
    positions.push_back(first);
    values.push_back({first, "Platform", modules.At(first).platform});
    texts.push_back(findings.NameOf(first) +
                    (more > 0 ? " and " + std::to_string(more) + " more" : "") + " for " +
                    modules.At(first).platform);
  }
  findings
      .Add(kPlatformConflict, positions,
           "a package is for one 64-bit platform, but these are merged: " + JoinSome(texts, ", "))
      .values = std::move(values);
}

/// Returns whether two modules are copies, which may share a package code: it belongs to one
/// version in one language.
bool AreCopies(const Module& a, const Module& b) {
  return IsSameFolded(a.key, b.key) && CompareVersionTexts(a.version, b.version) == 0;
}

void CheckPackageCodes(const CheckedModules& modules, FindingList& findings) {
  std::unordered_map<std::string, std::vector<size_t>> byCode;
  for (const size_t position : modules.Scope()) {
    const std::string& code = modules.At(position).packageCode;
    if (!code.empty()) {
      byCode[text::FoldCase(code)].push_back(position);
    }
  }
  for (const size_t position : modules.Scope()) {
    if (modules.At(position).packageCode.empty()) {
      continue;
    }
    const auto found = byCode.find(text::FoldCase(modules.At(position).packageCode));
    const std::vector<size_t>& same = found->second;
    if (same.front() != position ||
        std::all_of(
            same.begin(), same.end(),
            [&](size_t other) { return AreCopies(modules.At(position), modules.At(other)); }) ||
        !findings.Admit(kDuplicatePackageCode)) {
      continue;
    }
    std::vector<std::string> places;
    places.reserve(same.size());
    for (const size_t other : same) {
      places.push_back(findings.NameOf(other) + " (" + GetFileInSentence(modules.At(other)) + ')');
    }
    Finding& finding =
        findings.Add(kDuplicatePackageCode, same,
                     "the package code " + modules.At(position).packageCode + " belongs to " +
                         std::to_string(same.size()) + " modules: " + JoinSome(places, ", "));
    finding.values = {{position, "PackageCode", modules.At(position).packageCode}};
  }
}

}  // namespace

void CheckModuleFacts(const CheckedModules& modules, FindingList& findings) {
  VersionCheck versions(modules, findings);
  for (const size_t position : modules.Scope()) {
    const Module& module = modules.At(position);
    if (!module.failure.empty() && findings.Admit(kUnreadableModule)) {
      findings.Add(kUnreadableModule, {position},
                   GetFileInSentence(module) + " cannot be read: " + module.failure);
    }
    if (!module.change.empty() && findings.Admit(kChangedModule)) {
      findings.Add(
          kChangedModule, {position},
          GetFileInSentence(module) + " is not the file that was listed: " + module.change);
    }
    CheckPresence(modules, position, findings);
    CheckTemplate(modules, position, findings);
    versions.Run(position);
  }
}

void CheckIdentities(const CheckedModules& modules, FindingList& findings) {
  IdentityCheck(modules, findings).Run();
  CheckPackageCodes(modules, findings);
  if (modules.IsMerge()) {
    CheckMergedPlatforms(modules, findings);
  }
}

}  // namespace qm::merge

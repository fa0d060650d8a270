#include "client/findings/Baseline.h"

#include <algorithm>
#include <limits>
#include <map>
#include <stdexcept>

namespace mmcat {

namespace {

constexpr char kSchema[] = "mmcat/baseline/1";

/// A member that must be a text. Throws std::runtime_error.
std::string ReadTextMember(const Json& entry, const char* name) {
  const auto member = entry.find(name);
  if (member == entry.end()) {
    return "";
  }
  if (!member->is_string()) {
    throw std::runtime_error(std::string("\"") + name + "\" is not a text");
  }
  return member->get<std::string>();
}

/// Throws std::runtime_error.
std::vector<std::string> ReadModules(const Json& entry) {
  std::vector<std::string> modules;
  for (const Json& module : entry.value("modules", Json::array())) {
    if (!module.is_string()) {
      throw std::runtime_error("\"modules\" is not a list of texts");
    }
    modules.push_back(module.get<std::string>());
  }
  std::sort(modules.begin(), modules.end());
  return modules;
}

/// Throws std::runtime_error.
BaselineEntry ReadEntry(const Json& json) {
  if (!json.is_object()) {
    throw std::runtime_error("it is not an object");
  }
  BaselineEntry entry;
  entry.identity = {ReadTextMember(json, "code"), ReadModules(json), ReadTextMember(json, "table"),
                    ReadTextMember(json, "key")};
  if (entry.identity.code.empty()) {
    throw std::runtime_error("it has no \"code\"");
  }
  if (const auto count = json.find("count"); count != json.end()) {
    constexpr int kMost = std::numeric_limits<int>::max();
    if (!count->is_number_unsigned() || *count == 0U || *count > static_cast<unsigned>(kMost)) {
      throw std::runtime_error("\"count\" is not a number of findings");
    }
    entry.count = count->get<int>();
  }
  entry.reason = ReadTextMember(json, "reason");
  return entry;
}

}  // namespace

std::vector<BaselineEntry> ParseBaseline(const std::string& text) {
  const Json document = Json::parse(text, nullptr, false);
  if (text.empty()) {
    throw std::runtime_error("the file is empty; --write-baseline makes a baseline");
  }
  if (text.find('\0') != std::string::npos) {
    throw std::runtime_error("this is not UTF-8; save the baseline as UTF-8");
  }
  if (document.is_discarded()) {
    throw std::runtime_error("this is not JSON; it may be cut");
  }
  const bool isDocument = document.is_object() && document.contains("schema");
  if (!isDocument || document["schema"] != kSchema) {
    const bool isOther = isDocument && document["schema"].is_string() &&
                         document["schema"].get<std::string>().rfind("mmcat/baseline/", 0) == 0;
    throw std::runtime_error(isOther ? "another version of mmcat wrote this baseline"
                                     : "this is not a baseline of mmcat");
  }
  if (!document.contains("entries") || !document["entries"].is_array()) {
    throw std::runtime_error("the baseline has no \"entries\"");
  }
  std::map<FindingIdentity, BaselineEntry> entries;
  size_t number = 0;
  for (const Json& json : document["entries"]) {
    ++number;
    try {
      BaselineEntry entry = ReadEntry(json);
      const auto [known, isNew] = entries.emplace(entry.identity, entry);
      if (!isNew) {
        known->second.count +=
            std::min(entry.count, std::numeric_limits<int>::max() - known->second.count);
        known->second.reason += known->second.reason.empty() ? entry.reason : "";
      }
    } catch (const std::exception& failure) {
      throw std::runtime_error("entry " + std::to_string(number) + ": " + failure.what());
    }
  }
  std::vector<BaselineEntry> list;
  list.reserve(entries.size());
  for (auto& [identity, entry] : entries) {
    list.push_back(std::move(entry));
  }
  return list;
}

Json MakeBaselineEntryJson(const BaselineEntry& entry) {
  return {{"code", entry.identity.code},   {"modules", entry.identity.modules},
          {"table", entry.identity.table}, {"key", entry.identity.key},
          {"count", entry.count},          {"reason", entry.reason}};
}

std::string FormatBaseline(std::vector<BaselineEntry> entries) {
  std::sort(entries.begin(), entries.end(),
            [](const BaselineEntry& a, const BaselineEntry& b) { return a.identity < b.identity; });
  Json list = Json::array();
  for (const BaselineEntry& entry : entries) {
    list.push_back(MakeBaselineEntryJson(entry));
  }
  return FormatJson({{"schema", kSchema}, {"entries", std::move(list)}});
}

}  // namespace mmcat

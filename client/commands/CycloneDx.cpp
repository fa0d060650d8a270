#include "client/commands/CycloneDx.h"

#include <map>

namespace mmcat {

namespace {

/// Adds a member, unless its value is empty: the format has no empty texts.
void AddText(Json& object, const char* member, const std::string& value) {
  if (!value.empty()) {
    object[member] = value;
  }
}

void AddHash(Json& component, const char* algorithm, const std::string& hash) {
  if (!hash.empty()) {
    component["hashes"] = Json::array({{{"alg", algorithm}, {"content", hash}}});
  }
}

/// Adds properties for values that the format has no member for. Leaves out empty values.
void AddProperties(Json& component,
                   std::initializer_list<std::pair<const char*, std::string>> properties) {
  for (const auto& [name, value] : properties) {
    if (!value.empty()) {
      component["properties"].push_back({{"name", std::string("mmcat:") + name}, {"value", value}});
    }
  }
}

Json MakeFileComponent(const InventoryFile& file) {
  Json component{{"type", "file"}, {"name", file.facts.name}};
  AddText(component, "version", file.facts.version);
  AddHash(component, "MD5", file.md5);
  AddProperties(component, {{"key", file.facts.key},
                            {"language", file.facts.language},
                            {"targetPath", file.facts.targetPath}});
  return component;
}

/// References to the modules: their keys, with a number where one key occurs again.
std::vector<std::string> MakeReferences(const std::vector<ModuleFacts>& modules) {
  std::map<std::string, int> uses;
  std::vector<std::string> references;
  for (const ModuleFacts& module : modules) {
    const int use = ++uses[module.key];
    references.push_back(use == 1 && !module.key.empty() ? module.key
                                                         : module.key + '#' + std::to_string(use));
  }
  return references;
}

Json MakeModuleComponent(const ModuleFacts& facts, const InventoryModule& module) {
  Json component{{"type", "library"}};
  AddText(component, "author", module.author);
  component["name"] = facts.moduleId.empty() ? facts.displayName : facts.moduleId;
  AddText(component, "version", facts.version);
  AddText(component, "description", module.subject);
  AddHash(component, "SHA-256", module.sha256);
  AddProperties(component, {{"key", facts.key},
                            {"language", module.language ? std::to_string(*module.language) : ""},
                            {"platform", module.platform},
                            {"packageCode", facts.packageCode},
                            {"path", facts.path}});
  for (const InventoryFile& file : module.files) {
    component["components"].push_back(MakeFileComponent(file));
  }
  return component;
}

}  // namespace

std::string FormatCycloneDx(const ModuleSet& set, const std::vector<InventoryModule>& inventory) {
  const std::vector<std::string> references = MakeReferences(set.Modules());
  Json components = Json::array();
  Json dependencies = Json::array();
  for (const InventoryModule& module : inventory) {
    const std::string& reference = references[module.position];
    components.push_back(MakeModuleComponent(set.Modules()[module.position], module));
    components.back()["bom-ref"] = reference;
    Json needs = Json::array();
    for (const size_t needed : module.needs) {
      needs.push_back(references[needed]);
    }
    dependencies.push_back({{"ref", reference}, {"dependsOn", std::move(needs)}});
  }
  const Json tool{{"type", "application"}, {"name", "mmcat"}, {"version", MMCAT_VERSION}};
  const Json document{{"$schema", "http://cyclonedx.org/schema/bom-1.5.schema.json"},
                      {"bomFormat", "CycloneDX"},
                      {"specVersion", "1.5"},
                      {"version", 1},
                      {"metadata", {{"tools", {{"components", Json::array({tool})}}}}},
                      {"components", std::move(components)},
                      {"dependencies", std::move(dependencies)}};
  return FormatJson(document);
}

}  // namespace mmcat

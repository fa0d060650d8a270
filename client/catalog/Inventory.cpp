#include "client/catalog/Inventory.h"

#include <algorithm>
#include <array>
#include <map>

#include "client/catalog/Hash.h"
#include "client/catalog/Properties.h"
#include "client/catalog/TableRows.h"

namespace mmcat {

namespace {

/// The hash in a row of the MsiFileHash table: four numbers, each with its lowest byte first.
std::string ReadMd5(ISetRow& row) {
  std::array<unsigned char, 16> bytes{};
  size_t size = 0;
  for (const wchar_t* column : {L"HashPart1", L"HashPart2", L"HashPart3", L"HashPart4"}) {
    const std::optional<long> part = ReadCell(row, column).Number();
    if (!part) {
      return "";
    }
    for (unsigned shift = 0; shift < 32; shift += 8) {
      bytes[size++] = static_cast<unsigned char>(static_cast<unsigned long>(*part) >> shift);
    }
  }
  // Some tools write zeros if they do not have the file.
  const bool isZero = std::all_of(bytes.begin(), bytes.end(), [](auto byte) { return byte == 0; });
  return isZero ? "" : FormatHex(bytes.data(), bytes.size());
}

/// The hashes of the MsiFileHash table by File.File.
std::map<std::string, std::string> ReadHashes(ISetModule& module) {
  std::map<std::string, std::string> hashes;
  ForEachRow(module, L"MsiFileHash",
             [&](ISetRow& row) { hashes.emplace(ReadCell(row, L"File_").Text(), ReadMd5(row)); });
  return hashes;
}

std::vector<InventoryFile> ReadInventoryFiles(const ModuleSet& set, size_t position) {
  const std::map<std::string, std::string> hashes = ReadHashes(*set.Modules()[position].object);
  std::vector<InventoryFile> files;
  for (FileFacts& facts : set.FilesOf(position)) {
    const auto hash = hashes.find(facts.key);
    files.push_back({std::move(facts), hash == hashes.end() ? "" : hash->second});
  }
  return files;
}

std::vector<size_t> FindNeeds(const ModuleSet& set, size_t position) {
  std::vector<size_t> needs;
  for (const RequirementFacts& requirement : set.RequirementsOf(position)) {
    if (requirement.satisfiedBy) {
      needs.push_back(*requirement.satisfiedBy);
    }
  }
  std::sort(needs.begin(), needs.end());
  needs.erase(std::unique(needs.begin(), needs.end()), needs.end());
  return needs;
}

}  // namespace

std::vector<InventoryModule> TakeInventory(const ModuleSet& set, Report& report) {
  std::vector<InventoryModule> inventory;
  for (size_t position = 0; position < set.Modules().size(); ++position) {
    const ModuleFacts& facts = set.Modules()[position];
    ISetModule& object = *facts.object;
    InventoryModule module;
    module.position = position;
    if (!facts.moduleId.empty()) {
      module.language = ReadOptionalNumber(object, &ISetModule::get_Language);
    }
    module.platform = ReadText(object, &ISetModule::get_Platform);
    module.author = ReadText(object, &ISetModule::get_Author);
    module.subject = ReadText(object, &ISetModule::get_Subject);
    module.files = ReadInventoryFiles(set, position);
    module.needs = FindNeeds(set, position);
    if (facts.isPresent) {
      try {
        module.sha256 = HashFile(ToSystemPath(facts.path));
      } catch (const ServerFailure& failure) {
        report.AddFailure({facts.path, "SHA-256", failure.HResult(), failure.what()});
      }
    }
    inventory.push_back(std::move(module));
  }
  return inventory;
}

}  // namespace mmcat

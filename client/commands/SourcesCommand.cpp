#include "client/catalog/Catalog.h"
#include "client/catalog/Properties.h"
#include "client/commands/Commands.h"
#include "client/terminal/Csv.h"
#include "client/terminal/Report.h"
#include "client/terminal/TextTable.h"

namespace mmcat {

namespace {

struct ListedSource {
  int pass = 1;  ///< modules of pass 1 are listed before those of pass 2
  long modules = 0;
  std::string displayName;
  std::string folder;
  std::string entry;  ///< the folder as the search path spells it
};

ListedSource ReadSource(IMMSource& source) {
  return {ReadFlag(source, &IMMSource::get_SecondPass) ? 2 : 1,
          ReadNumber(*ReadObject(source, &IMMSource::get_MergeModules), &IMergeModules::get_Count),
          ReadDisplayName(source, &IMMSource::get_Folder), ReadPath(source, &IMMSource::get_Folder),
          ReadPath(source, &IMMSource::get_Entry)};
}

std::string FormatSources(const std::vector<ListedSource>& sources) {
  if (sources.empty()) {
    return "No search folders\n";
  }
  TextTable table({"Folder", "Modules", "Pass", "Display name", "Entry"});
  for (const ListedSource& source : sources) {
    const auto unlessFolder = [&](const std::string& text) {
      return text == source.folder ? "" : text;
    };
    table.AddRow({source.folder, std::to_string(source.modules), std::to_string(source.pass),
                  unlessFolder(source.displayName), unlessFolder(source.entry)});
  }
  return table.ToString("");
}

Json MakeSourcesJson(const std::vector<ListedSource>& sources) {
  Json list = Json::array();
  for (const ListedSource& source : sources) {
    list.push_back({{"pass", source.pass},
                    {"moduleCount", source.modules},
                    {"displayName", source.displayName},
                    {"folder", source.folder},
                    {"entry", source.entry}});
  }
  return list;
}

ExitCode Run(const OutputOptions& output) {
  std::vector<ListedSource> sources;
  ForEachItem<IMMSource>(*Catalog().Sources(),
                         [&](IMMSource& source) { sources.push_back(ReadSource(source)); });
  Report report("sources", output, 2);
  report.Document()["sources"] = MakeSourcesJson(sources);
  if (report.Format() == OutputFormat::Csv) {
    report.PrintConverted(FormatCsv({"pass", "moduleCount", "displayName", "folder", "entry"},
                                    report.Document()["sources"]));
  }
  report.Print(FormatSources(sources));
  return report.Finish();
}

}  // namespace

extern const Command kSourcesCommand = {
    "sources",           "List the module search folders", "  mmcat sources\n", PrepareCommand<Run>,
    {OutputFormat::Csv},
};

}  // namespace mmcat

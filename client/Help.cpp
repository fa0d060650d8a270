#include "client/Help.h"

#include <map>

namespace {

const char* ExamplesOf(const std::string& command) {
  static const std::map<std::string, const char*> examples{
      {"mmcat",
       "  mmcat check --folder C:\\Modules        what is wrong in a folder of modules\n"
       "  mmcat which msgbox.dll                 which module delivers a file\n"
       "  mmcat deps Charmap.3128F3C8:1033       what a module needs, in the order of merging\n"
       "  mmcat show C:\\Modules\\Charmap.msm      everything about a module\n"
       "  mmcat list --json                      for another program\n"},
      {"show",
       "  mmcat show C:\\Modules\\*.msm\n"
       "  mmcat show Charmap.3128F3C8:1033       a module of the catalog\n"},
      {"list",
       "  mmcat list\n"
       "  mmcat list --folder C:\\Modules --folder D:\\More\n"},
      {"find",
       "  mmcat find Charmap.3128F3C8            in every language\n"
       "  mmcat find Charmap.3128F3C8:1031 --version 2.4.1.0\n"},
      {"which",
       "  mmcat which msgbox.dll\n"
       "  mmcat which \"*.ocx\" --folder C:\\Modules\n"},
      {"name", "  mmcat name Charmap.3128F3C8:1033\n"},
      {"files",
       "  mmcat files --folder C:\\Modules\n"
       "  mmcat files \"msg*.dll\"\n"},
      {"exclusions", "  mmcat exclusions --folder C:\\Modules\n"},
      {"deps",
       "  mmcat deps Charmap.3128F3C8            everything to merge, in its order\n"
       "  mmcat deps Charmap.3128F3C8 --tree\n"
       "  mmcat deps Charmap.3128F3C8 --reverse  what breaks without it\n"},
      {"check",
       "  mmcat check --folder C:\\Modules\n"
       "  mmcat check Charmap.3128F3C8:1033 Zip.DC6CE4A1    only what these two need\n"},
      {"sources", "  mmcat sources\n"},
      {"gallery", "  mmcat gallery --gallery D:\\Gallery --folder C:\\Modules\n"},
  };
  const auto found = examples.find(command);
  return found == examples.end() ? "" : found->second;
}

}  // namespace

std::string HelpFormatter::make_description(const CLI::App* app) const {
  return std::string("Examples:\n") + ExamplesOf(app->get_name()) + '\n' + app->get_description() +
         ".\n";
}

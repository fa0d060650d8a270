#include "client/catalog/SearchedPlaces.h"

#include <algorithm>

#include "client/catalog/Catalog.h"
#include "client/catalog/CatalogSettings.h"
#include "client/catalog/FileNames.h"
#include "client/catalog/PathSpelling.h"
#include "client/catalog/Properties.h"
#include "client/terminal/Report.h"
#include "client/terminal/Text.h"
#include "text/Utf.h"

namespace mmcat {

namespace {

std::vector<std::string> ReadFolders() {
  std::vector<std::string> folders;
  ForEachItem<IMMSource>(*Catalog().Sources(), [&](IMMSource& source) {
    folders.push_back(ReadPath(source, &IMMSource::get_Folder));
  });
  return folders;
}

std::string JoinFolders(std::vector<std::string> folders) {
  constexpr size_t kMost = 4;
  for (size_t i = 0; i < std::min(folders.size(), kMost + 1); ++i) {
    folders[i] += ValidateFolder(folders[i]).empty() ? "" : " (not found)";
  }
  return JoinSome(folders, kMost);
}

}  // namespace

void PrintSearchedPlaces() {
  static bool isPrinted = false;
  if (std::exchange(isPrinted, true)) {
    return;
  }
  const std::string folders = JoinFolders(ReadFolders());
  if (IsCatalogReplaced()) {
    PrintHint(folders.empty() ? "looked in no folder; --folder DIR names one"
                              : "looked in " + folders);
  } else {
    PrintHint(folders.empty()
                  ? "the catalog of this machine has no search folders; --folder DIR names one"
                  : "looked in the catalog of this machine, " + folders +
                        "; --folder DIR looks in another folder");
  }
}

void PrintFoldersWithPackages() {
  for (const std::string& folder : ReadFolders()) {
    const std::vector<std::wstring> packages = FindFileNames(ToSystemPath(folder + "/*.msi"));
    if (!packages.empty()) {
      PrintHint(folder + ": this folder has installation packages, such as " +
                qm::text::ToUtf8(packages.front()) + "; only .msm files are modules");
    }
  }
}

}  // namespace mmcat

#pragma once

namespace mmcat {

/// Prints where the catalog looks for modules, once in a run, as a hint to a user whose module or
/// file was not found there. Throws ServerFailure.
void PrintSearchedPlaces();

/// Prints the search folders that have installation packages, which a user may take for modules.
void PrintFoldersWithPackages();

}  // namespace mmcat

#pragma once

#include <string>
#include <vector>

#include "client/catalog/Inventory.h"

namespace mmcat {

/// An inventory as a bill of materials, a CycloneDX 1.5 document: a component for each module, with
/// its files as components of that, and which modules need which. The same inventory always makes
/// the same document, so it has neither a date nor a serial number.
std::string FormatCycloneDx(const ModuleSet& set, const std::vector<InventoryModule>& inventory);

}  // namespace mmcat

#pragma once

namespace qm::server {

// Identifiers of the DLL's resources.
#define IDS_SERVER_NAME 100
#define IDS_CLASS_DESCRIPTION 1009

}  // namespace qm::server

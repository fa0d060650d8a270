#pragma once

#include <string>

#include "common/ComPtr.h"
#include "common/WideString.h"

namespace mmcat {

/// What identifies a module, and the size of its File table. Texts are UTF-8.
struct ModuleIdentity {
  std::string key;
  std::string version;
  std::string packageCode;
  long files = 0;
};

/// The installer's automation object, which reads modules without the server.
class InstallerObject {
 public:
  /// Throws ServerFailure if the object cannot be created.
  InstallerObject();

  /// Reads a module file. Throws ServerFailure if a call of the object fails.
  ModuleIdentity ReadModule(const qm::common::WideString& path) const;

 private:
  qm::common::ComPtr<IDispatch> m_installer;
};

}  // namespace mmcat

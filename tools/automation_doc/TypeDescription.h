#pragma once

#include <string>
#include <vector>

namespace qm::docs {

/// A member of an interface as its type library describes it. All texts are UTF-8.
struct MemberDescription {
  std::string name;
  std::string signature;    ///< as a script sees it: "Property Key As String, read-only"
  std::string declaration;  ///< as C++ sees it: "HRESULT get_Key(BSTR* value)"
  int slot = 0;             ///< counted from 1 after those of IDispatch
  long id = 0;              ///< dispatch identifier
  std::string help;
  std::string errors;  ///< what follows "Errors: " in the help text; may be empty
  bool isHidden = false;
  bool hasTypedOut = false;  ///< an out parameter that a script cannot pass
  std::string resultType;    ///< type that a script receives; empty if there is no result
};

struct InterfaceDescription {
  std::string name;
  std::string guid;
  std::string base;
  std::string help;
  std::string errors;
  std::vector<MemberDescription> members;  ///< its own, in slot order

  /// Returns the member of this name, or null.
  const MemberDescription* Find(const char* member) const noexcept;
  bool IsCollection() const noexcept { return Find("_NewEnum") != nullptr; }
};

struct ClassDescription {
  std::string name;
  std::string guid;
  std::string programId;
  std::string help;
  std::string interfaceName;
};

/// Reads the interfaces of the library at `path`, in its order. Throws std::runtime_error.
std::vector<InterfaceDescription> ReadInterfaces(const wchar_t* path);

/// Reads the classes of the library at `path`, in its order, with the identifiers under which the
/// side-by-side manifest at `manifest` offers them to scripts. Throws std::runtime_error, also for
/// a class that the manifest lacks.
std::vector<ClassDescription> ReadClasses(const wchar_t* path, const wchar_t* manifest);

}  // namespace qm::docs

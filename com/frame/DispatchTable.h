#pragma once

#include <windows.h>

#include <string>
#include <string_view>
#include <vector>

namespace qm::com {

/// What IDispatch needs most often of a dual interface: the dispatch identifiers of its members by
/// name, and the virtual-table slots of properties that are read without arguments. Read once from
/// the type information, because that searches its members at every call. Immutable after
/// construction.
class DispatchTable {
 public:
  /// A property of type VT_BSTR, VT_I4 or VT_BOOL that is read without arguments.
  struct Getter {
    DISPID member;
    unsigned slot;  ///< counted from 0, including those of IUnknown and IDispatch
    VARTYPE type;
  };

  /// `info` describes a dual interface. Members that it fails to describe are left out. Throws
  /// std::bad_alloc.
  explicit DispatchTable(ITypeInfo& info);

  /// Returns the identifier of a member, ignoring the case of ASCII letters. DISPID_UNKNOWN if the
  /// table lacks the name.
  DISPID FindMember(std::wstring_view name) const noexcept;

  /// Returns the getter of a member, or null if the member is not such a property.
  const Getter* FindGetter(DISPID member) const noexcept;

 private:
  struct Name {
    std::wstring text;
    DISPID member;
  };

  void AddMembers(ITypeInfo& interfaceInfo);
  void AddMember(ITypeInfo& info, const FUNCDESC& function);

  std::vector<Name> m_names;      // sorted by text
  std::vector<Getter> m_getters;  // sorted by member
};

/// Reads a property as ITypeInfo::Invoke does. `object` implements the interface.
HRESULT InvokeGetter(void* object, const DispatchTable::Getter& getter, VARIANT& result,
                     EXCEPINFO* exception) noexcept;

}  // namespace qm::com

#pragma once

#include <windows.h>

#include <string>
#include <string_view>
#include <vector>

/// What scripts ask of a dual interface most, taken out of its type information once: the
/// identifiers of all members by name, and the virtual-table slots of the properties that are read
/// without arguments. Type information looks through its members at every call.
class DispatchTable {
 public:
  /// A property of one of the types VT_BSTR, VT_I4 and VT_BOOL that is read without arguments.
  struct Getter {
    DISPID member;
    unsigned slot;  ///< from 0, those of IUnknown and IDispatch included
    VARTYPE type;
  };

  /// `info` describes a dual interface. Members that it does not tell of are left out. Throws
  /// std::bad_alloc.
  explicit DispatchTable(ITypeInfo& info);

  /// The identifier of a member, in any case of ASCII letters; DISPID_UNKNOWN for a name that is
  /// not in the table.
  DISPID FindMember(std::wstring_view name) const noexcept;

  /// Null for a member that is not such a property.
  const Getter* FindGetter(DISPID member) const noexcept;

 private:
  struct Name {
    std::wstring text;
    DISPID member;
  };

  void AddMembers(ITypeInfo& interfaceInfo);
  void AddMember(ITypeInfo& info, const FUNCDESC& function);

  std::vector<Name> m_names;      // in order
  std::vector<Getter> m_getters;  // by member
};

/// Reads a property: what ITypeInfo::Invoke does for it. `object` implements the interface.
HRESULT InvokeGetter(void* object, const DispatchTable::Getter& getter, VARIANT& result,
                     EXCEPINFO* exception) noexcept;

#include "tools/automation_doc/TypeDescription.h"

#include <windows.h>

#include <algorithm>
#include <stdexcept>

#include "common/Bstr.h"
#include "common/ComPtr.h"
#include "text/Utf.h"

namespace qm::docs {

namespace {

void ThrowIfFailed(HRESULT hr, const char* what) {
  if (FAILED(hr)) {
    char text[16];
    std::snprintf(text, sizeof text, "0x%08lX", static_cast<unsigned long>(hr));
    throw std::runtime_error(std::string(what) + ": " + text);
  }
}

std::string FormatGuid(const GUID& guid) {
  wchar_t text[40];
  ::StringFromGUID2(guid, text, static_cast<int>(std::size(text)));
  return text::ToUtf8(text);
}

/// Owns what an ITypeInfo lends: the attributes of a type, or the description of a function.
template <class T, void (STDMETHODCALLTYPE ITypeInfo::*release)(T*)>
class TypeInfoLoan {
 public:
  explicit TypeInfoLoan(ITypeInfo& info) noexcept : m_info(info) {}
  ~TypeInfoLoan() {
    if (m_value) {
      (m_info.*release)(m_value);
    }
  }
  TypeInfoLoan(const TypeInfoLoan&) = delete;
  TypeInfoLoan& operator=(const TypeInfoLoan&) = delete;

  T** Put() noexcept { return &m_value; }
  const T* operator->() const noexcept { return m_value; }

 private:
  ITypeInfo& m_info;
  T* m_value = nullptr;
};
using Attributes = TypeInfoLoan<TYPEATTR, &ITypeInfo::ReleaseTypeAttr>;
using Function = TypeInfoLoan<FUNCDESC, &ITypeInfo::ReleaseFuncDesc>;

/// The name of a type or a member, and its help text split at "Errors: ".
struct Documentation {
  Documentation(ITypeInfo& info, MEMBERID member) {
    common::UniqueBstr nameText;
    common::UniqueBstr helpText;
    ThrowIfFailed(info.GetDocumentation(member, nameText.Put(), helpText.Put(), nullptr, nullptr),
                  "GetDocumentation");
    name = text::ToUtf8(common::ViewOf(nameText.Get()));
    help = text::ToUtf8(common::ViewOf(helpText.Get()));
    if (help.empty()) {
      throw std::runtime_error(name + " has no help text");
    }
    constexpr char kErrors[] = " Errors: ";
    const size_t found = help.find(kErrors);
    if (found != std::string::npos) {
      errors = help.substr(found + std::size(kErrors) - 1);
      help.resize(found);
    }
  }

  std::string name;
  std::string help;
  std::string errors;
};

std::string NameOf(ITypeInfo& info) {
  common::UniqueBstr name;
  ThrowIfFailed(info.GetDocumentation(MEMBERID_NIL, name.Put(), nullptr, nullptr, nullptr),
                "type name");
  return text::ToUtf8(common::ViewOf(name.Get()));
}

common::ComPtr<ITypeInfo> GetReferencedType(ITypeInfo& info, HREFTYPE reference) {
  common::ComPtr<ITypeInfo> referenced;
  ThrowIfFailed(info.GetRefTypeInfo(reference, referenced.Put()), "referenced type");
  return referenced;
}

common::ComPtr<ITypeInfo> GetImplementedType(ITypeInfo& info, int number) {
  HREFTYPE reference = 0;
  ThrowIfFailed(info.GetRefTypeOfImplType(static_cast<UINT>(number), &reference),
                "implemented type");
  return GetReferencedType(info, reference);
}

/// The name of a type for each of the two kinds of clients.
struct TypeNames {
  std::string script;
  std::string cpp;
};

TypeNames GetTypeNames(ITypeInfo& info, const TYPEDESC& type) {
  switch (type.vt) {
    case VT_USERDEFINED: {
      const std::string name = NameOf(*GetReferencedType(info, type.hreftype));
      return {name, name};
    }
    case VT_I4:
      return {"Long", "long"};
    case VT_BSTR:
      return {"String", "BSTR"};
    case VT_BOOL:
      return {"Boolean", "VARIANT_BOOL"};
    case VT_VARIANT:
      return {"Variant", "VARIANT"};
    case VT_UNKNOWN:
      return {"Object", "IUnknown*"};
    case VT_DISPATCH:
      return {"Object", "IDispatch*"};
    default:
      throw std::runtime_error("a type that this program does not know: " +
                               std::to_string(type.vt));
  }
}

TypeNames NamesOfParameter(ITypeInfo& info, const ELEMDESC& parameter) {
  const TYPEDESC* type = &parameter.tdesc;
  std::string stars;
  for (; type->vt == VT_PTR; type = type->lptdesc) {
    stars += '*';
  }
  TypeNames names = GetTypeNames(info, *type);
  names.cpp += stars;
  return names;
}

std::vector<std::string> GetParameterNames(ITypeInfo& info, const FUNCDESC& function) {
  constexpr UINT kMost = 16;
  BSTR names[kMost] = {};
  UINT count = 0;
  ThrowIfFailed(info.GetNames(function.memid, names, kMost, &count), "GetNames");
  std::vector<std::string> texts;
  for (UINT i = 0; i < count; ++i) {
    texts.push_back(text::ToUtf8(common::ViewOf(common::UniqueBstr(names[i]).Get())));
    if (i > 0) {
      // A type library keeps one spelling of a name, so a parameter may be spelled like a member of
      // the same name.
      char& first = texts.back()[0];
      first = static_cast<char>(first >= 'A' && first <= 'Z' ? first - 'A' + 'a' : first);
    }
  }
  // The parameter of a property setter has no name.
  texts.resize(static_cast<size_t>(function.cParams) + 1, "value");
  return texts;
}

/// Returns the attributes of a parameter as IDL writes them.
std::string AttributesOf(USHORT flags) {
  if (flags & PARAMFLAG_FRETVAL) {
    return "[out, retval] ";
  }
  std::string text = flags & PARAMFLAG_FIN ? "[in" : "[";
  if (flags & PARAMFLAG_FOUT) {
    text += flags & PARAMFLAG_FIN ? ", out" : "out";
  }
  return text + (flags & PARAMFLAG_FOPT ? ", optional] " : "] ");
}

void AppendTo(std::string& list, const std::string& text) {
  list += (list.empty() ? "" : ", ") + text;
}

MemberDescription ReadMember(ITypeInfo& info, UINT index) {
  Function function(info);
  ThrowIfFailed(info.GetFuncDesc(index, function.Put()), "GetFuncDesc");
  const Documentation documentation(info, function->memid);

  MemberDescription member;
  member.name = documentation.name;
  member.help = documentation.help;
  member.errors = documentation.errors;
  member.id = function->memid;
  constexpr int kDispatchSlots = 7;
  member.slot = function->oVft / static_cast<int>(sizeof(void*)) - kDispatchSlots + 1;
  member.isHidden = (function->wFuncFlags & FUNCFLAG_FHIDDEN) != 0;

  const std::vector<std::string> names = GetParameterNames(info, **function.Put());
  std::string forScripts;
  std::string forCpp;
  for (int i = 0; i < function->cParams; ++i) {
    const ELEMDESC& parameter = function->lprgelemdescParam[i];
    const TypeNames types = NamesOfParameter(info, parameter);
    const std::string& name = names[static_cast<size_t>(i) + 1];
    const USHORT flags = parameter.paramdesc.wParamFlags;
    AppendTo(forCpp, AttributesOf(flags) + types.cpp + ' ' + name);
    if (flags & PARAMFLAG_FRETVAL) {
      member.resultType = types.script;
      continue;
    }
    const bool isOut = (flags & PARAMFLAG_FOUT) != 0;
    member.hasTypedOut = member.hasTypedOut || (isOut && types.script != "Variant");
    const std::string text = (isOut ? "ByRef " : std::string()) + name + " As " + types.script;
    AppendTo(forScripts, flags & PARAMFLAG_FOPT ? '[' + text + ']' : text);
  }

  const std::string result = member.resultType.empty() ? "" : " As " + member.resultType;
  const std::string parameters = forScripts.empty() ? "" : '(' + forScripts + ')';
  switch (function->invkind) {
    case INVOKE_PROPERTYGET:
      member.signature = "Property " + member.name + parameters + result + ", read-only";
      member.declaration = "get_";
      break;
    case INVOKE_PROPERTYPUT:
      member.signature = "Property " + member.name + parameters + ", write-only";
      member.declaration = "put_";
      break;
    default:
      member.signature =
          (result.empty() ? "Sub " : "Function ") + member.name + '(' + forScripts + ')' + result;
  }
  member.declaration = "HRESULT " + member.declaration + member.name + '(' + forCpp + ')';
  return member;
}

InterfaceDescription ReadInterface(ITypeInfo& dispatch) {
  constexpr int kVirtualTable = -1;
  const common::ComPtr<ITypeInfo> table = GetImplementedType(dispatch, kVirtualTable);
  Attributes attributes(*table);
  ThrowIfFailed(table->GetTypeAttr(attributes.Put()), "GetTypeAttr");

  const Documentation documentation(dispatch, MEMBERID_NIL);
  InterfaceDescription description;
  description.name = documentation.name;
  description.help = documentation.help;
  description.errors = documentation.errors;
  description.guid = FormatGuid(attributes->guid);
  description.base = NameOf(*GetImplementedType(*table, 0));
  for (UINT i = 0; i < attributes->cFuncs; ++i) {
    description.members.push_back(ReadMember(*table, i));
  }
  return description;
}

/// While in scope, makes COM find classes through a side-by-side manifest.
class ScopedManifest {
 public:
  explicit ScopedManifest(const wchar_t* manifest) {
    ACTCTXW context{};
    context.cbSize = sizeof context;
    context.lpSource = manifest;
    m_context = ::CreateActCtxW(&context);
    if (m_context == INVALID_HANDLE_VALUE) {
      ThrowIfFailed(HRESULT_FROM_WIN32(::GetLastError()), "the manifest");
    }
    if (!::ActivateActCtx(m_context, &m_cookie)) {
      const DWORD error = ::GetLastError();
      ::ReleaseActCtx(m_context);
      ThrowIfFailed(HRESULT_FROM_WIN32(error), "the manifest");
    }
  }
  ~ScopedManifest() {
    ::DeactivateActCtx(0, m_cookie);
    ::ReleaseActCtx(m_context);
  }
  ScopedManifest(const ScopedManifest&) = delete;
  ScopedManifest& operator=(const ScopedManifest&) = delete;

 private:
  HANDLE m_context;
  ULONG_PTR m_cookie = 0;
};

/// Returns the version-independent ProgID of a class.
std::string ProgramIdOf(const CLSID& clsid) {
  wchar_t* text = nullptr;
  ThrowIfFailed(::ProgIDFromCLSID(clsid, &text), "a class that the manifest does not name");
  std::string id = text::ToUtf8(text);
  ::CoTaskMemFree(text);
  return id.substr(0, id.rfind('.'));
}

ClassDescription ReadClass(ITypeInfo& info) {
  Attributes attributes(info);
  ThrowIfFailed(info.GetTypeAttr(attributes.Put()), "GetTypeAttr");
  const Documentation documentation(info, MEMBERID_NIL);
  return {documentation.name, FormatGuid(attributes->guid), ProgramIdOf(attributes->guid),
          documentation.help, NameOf(*GetImplementedType(info, 0))};
}

/// Calls `read` with every type of a kind.
template <class Read>
void ForEachType(const wchar_t* path, TYPEKIND kind, Read read) {
  common::ComPtr<ITypeLib> library;
  ThrowIfFailed(::LoadTypeLibEx(path, REGKIND_NONE, library.Put()), text::ToUtf8(path).c_str());
  const UINT count = library->GetTypeInfoCount();
  for (UINT i = 0; i < count; ++i) {
    TYPEKIND found{};
    common::ComPtr<ITypeInfo> info;
    ThrowIfFailed(library->GetTypeInfoType(i, &found), "GetTypeInfoType");
    ThrowIfFailed(library->GetTypeInfo(i, info.Put()), "GetTypeInfo");
    if (found == kind) {
      read(*info);
    }
  }
}

}  // namespace

const MemberDescription* InterfaceDescription::Find(const char* member) const noexcept {
  const auto found = std::find_if(members.begin(), members.end(),
                                  [&](const auto& known) { return known.name == member; });
  return found == members.end() ? nullptr : &*found;
}

std::vector<InterfaceDescription> ReadInterfaces(const wchar_t* path) {
  std::vector<InterfaceDescription> interfaces;
  ForEachType(path, TKIND_DISPATCH,
              [&](ITypeInfo& info) { interfaces.push_back(ReadInterface(info)); });
  return interfaces;
}

std::vector<ClassDescription> ReadClasses(const wchar_t* path, const wchar_t* manifest) {
  const ScopedManifest scope(manifest);
  std::vector<ClassDescription> classes;
  ForEachType(path, TKIND_COCLASS, [&](ITypeInfo& info) { classes.push_back(ReadClass(info)); });
  return classes;
}

}  // namespace qm::docs

#include "client/catalog/InstallerObject.h"

#include <algorithm>
#include <vector>

#include "client/catalog/Properties.h"
#include "client/catalog/Value.h"

namespace mmcat {

namespace {

/// Calls a method or reads a property by name, as scripts do.
template <class... Arguments>
Value Call(IDispatch* object, const wchar_t* name, Arguments... arguments) {
  ThrowIfFailed(object ? S_OK : E_POINTER);
  auto* text = const_cast<wchar_t*>(name);
  DISPID id = 0;
  ThrowIfFailed(object->GetIDsOfNames(IID_NULL, &text, 1, LOCALE_NEUTRAL, &id));
  std::vector<Value> values;
  (values.emplace_back(arguments), ...);
  std::vector<VARIANT> reversed;  // borrowed from `values`, last argument first
  for (auto value = values.rbegin(); value != values.rend(); ++value) {
    reversed.push_back(value->Get());
  }
  DISPPARAMS parameters{reversed.data(), nullptr, static_cast<UINT>(reversed.size()), 0};
  Value result;
  EXCEPINFO exception{};
  const HRESULT hr =
      object->Invoke(id, IID_NULL, LOCALE_NEUTRAL, DISPATCH_METHOD | DISPATCH_PROPERTYGET,
                     &parameters, &result.Get(), &exception, nullptr);
  const qm::common::UniqueBstr source(exception.bstrSource);
  const qm::common::UniqueBstr description(exception.bstrDescription);
  const qm::common::UniqueBstr helpFile(exception.bstrHelpFile);
  if (hr == DISP_E_EXCEPTION && description) {
    throw ServerFailure(exception.scode,
                        ToOneLine(qm::text::ToUtf8(qm::common::ViewOf(description.Get()))));
  }
  ThrowIfFailed(hr);
  return result;
}

/// The rows of a query.
class Rows {
 public:
  Rows(IDispatch* database, std::wstring_view query) : m_view(Call(database, L"OpenView", query)) {
    Call(m_view.Object(), L"Execute");
  }
  /// The next row; Nothing after the last one.
  Value Next() { return Call(m_view.Object(), L"Fetch"); }

 private:
  Value m_view;
};

}  // namespace

InstallerObject::InstallerObject() {
  CLSID clsid{};
  ThrowIfFailed(::CLSIDFromProgID(L"WindowsInstaller.Installer", &clsid));
  m_installer = CreateObject<IDispatch>(clsid, "WindowsInstaller.Installer");
}

ModuleIdentity InstallerObject::ReadModule(const qm::common::WideString& path) const {
  constexpr long kReadOnly = 0;
  constexpr long kPackageCodeProperty = 9;
  const Value database =
      Call(m_installer.Get(), L"OpenDatabase", std::wstring_view(path), kReadOnly);
  ModuleIdentity module;

  const Value signature =
      Rows(database.Object(), L"SELECT `ModuleID`, `Language`, `Version` FROM `ModuleSignature`")
          .Next();
  module.key = Call(signature.Object(), L"StringData", 1L).Text() + ':' +
               Call(signature.Object(), L"StringData", 2L).Text();
  module.version = Call(signature.Object(), L"StringData", 3L).Text();

  const Value summary = Call(database.Object(), L"SummaryInformation", 0L);
  module.packageCode = Call(summary.Object(), L"Property", kPackageCodeProperty).Text();

  // A query of a table that is not there fails.
  if (Rows(database.Object(), L"SELECT `Name` FROM `_Tables` WHERE `Name` = 'File'")
          .Next()
          .Object()) {
    Rows files(database.Object(), L"SELECT `File` FROM `File`");
    while (files.Next().Object()) {
      ++module.files;
    }
  }
  return module;
}

}  // namespace mmcat

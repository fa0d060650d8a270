#pragma once

#include <windows.h>

#include <map>
#include <string>
#include <vector>

#include "tests/support/ErrorObject.h"
#include "tests/support/Interfaces.h"
#include "tests/support/Variants.h"

namespace qm::tests {

// Reading objects of the server as its clients do, by the two routes of a dual interface.
//
// The value of a property is written as a text: "True" for a boolean, "(null)" for a null text, an
// item's properties separated by ";", a collection's items separated by " / ", and for a failure
// "0x", the HRESULT, a blank and the description.

enum class Route { VirtualTable, Dispatch };

/// Returns the description, or the source, of the thread's error object, and clears that.
std::wstring TakeDescription();
std::wstring TakeSource();

/// Calls the method in a slot of a virtual table, counted from 1 after those of IDispatch.
template <class... Arguments>
HRESULT CallSlot(IUnknown* object, size_t slot, Arguments... arguments) {
  using Method = HRESULT(STDMETHODCALLTYPE*)(IUnknown*, Arguments...);
  return (*reinterpret_cast<Method**>(object))[6 + slot](object, arguments...);
}

/// As CallSlot, with a null out pointer. Returns S_OK if the call leaves an older error object on
/// the thread.
template <class... Arguments>
HRESULT CallSlotWithNull(IUnknown* object, size_t slot, Arguments... arguments) {
  LeaveErrorObject(L"an older failure");
  const HRESULT hr = CallSlot(object, slot, arguments...);
  return TakeDescription().empty() ? hr : S_OK;
}

/// Calls a member through IDispatch, with one argument at most. Returns the HRESULT of the member.
HRESULT Invoke(IDispatch* object, const wchar_t* name, WORD flags, VARIANT* argument,
               VARIANT* result, std::wstring* description = nullptr);

std::wstring FailureText(HRESULT hr, const std::wstring& description);
bool IsFailure(const std::wstring& answer);

/// All properties of an item.
std::wstring ReadItem(IDispatch* item, const std::wstring& interfaceName, Route route);

/// The values of a module, by property.
using Answers = std::map<std::wstring, std::wstring>;

Answers ReadModule(IDispatch* module, Route route);

/// One property of a module, through the virtual table.
std::wstring ReadModule(IDispatch* module, const std::wstring& property);

}  // namespace qm::tests

#pragma once

#include <memory>
#include <string_view>
#include <vector>

#include "common/WideString.h"

namespace qm::siblings {

struct RepositoryProperty {
  common::WideString name;
  common::WideString value;
};

/// The properties of a repository, in file order.
using Repository = std::vector<RepositoryProperty>;

/// The repositories of a file, in file order.
using RepositoryList = std::vector<Repository>;

/// Reads the XML file
///
///   <Repositories>
///     <Repository>
///       <Property Name="..." Value="..."/>
///
/// Other elements and attributes are ignored, and so are properties without a name and elements
/// with a namespace prefix. A property without a value is empty. A file that does not exist has no
/// repositories. Raises failures as RaiseLastFileError does if the file cannot be read, and as
/// XmlReader does if it is malformed or has another root element.
std::shared_ptr<const RepositoryList> ReadRepositories(const common::WideString& path);

/// Returns whether a code of GetLastError means that a file or its folder does not exist.
bool IsMissingFile(unsigned long code) noexcept;

/// Returns the value of the first property with this name; empty if there is no such property.
std::wstring_view FindValue(const Repository& repository, std::wstring_view name) noexcept;

}  // namespace qm::siblings

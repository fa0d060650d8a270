#pragma once

#include <memory>
#include <string_view>
#include <vector>

#include "common/WideString.h"

struct RepositoryProperty {
  CWideString name;
  CWideString value;
};

/// The properties of a repository in the order of the file.
using Repository = std::vector<RepositoryProperty>;

/// The repositories of a file in its order.
using RepositoryList = std::vector<Repository>;

/// Reads the XML file
///
///   <Repositories>
///     <Repository>
///       <Property Name="..." Value="..."/>
///
/// Other elements and attributes do not count, nor does a property without name; one without value
/// is empty. Names are those without a namespace prefix. A file that does not exist has no
/// repositories. Raises what RaiseForFile says of one that cannot be read, and what CXmlDocument
/// says of one that is malformed; another root element is malformed.
std::shared_ptr<const RepositoryList> ReadRepositories(const CWideString& path);

/// Whether a code of GetLastError says that there is no such file, or no folder that it could lie
/// in.
bool IsMissingFile(unsigned long code) noexcept;

/// The value of a property, of several with one name that of the first; empty when there is none.
std::wstring_view FindValue(const Repository& repository, std::wstring_view name) noexcept;

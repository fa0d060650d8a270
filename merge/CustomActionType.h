#pragma once

#include <optional>
#include <string>

namespace qm::merge {

/// What a custom action of this type (CustomAction.Type) does, and when, in words: "calls a
/// function of a DLL in the Binary table; deferred, as the system".
std::string DescribeCustomActionType(std::optional<long> type);

}  // namespace qm::merge

#pragma once

#include <string>

#include "client/findings/CheckResult.h"

namespace mmcat {

/// A result as a report of tests in the XML that JUnit made common. Each finding is a test: it
/// failed if it fails the run, was skipped if it is known or ignored, and passed otherwise. Each
/// module without findings is a test that passed. Each file that could not be read is a test with
/// an error, and so is a run that checked nothing.
std::string FormatJUnit(const CheckResult& result);

}  // namespace mmcat

#pragma once

#include <string>

#include "client/findings/CheckResult.h"

namespace mmcat {

/// A result as a report of tests in the XML that JUnit made common. Each finding is a test: it
/// failed if it fails the run, was skipped if it is known or ignored, and passed otherwise. Each
/// module without findings is a test that passed, and each file that could not be read one with an
/// error. So is a run that checked nothing.
std::string FormatJUnit(const CheckResult& result);

}  // namespace mmcat

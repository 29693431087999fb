// A survey in the form that monitoring systems take from their plug-ins.
#pragma once

#include <string>

#include "mcstore/health/survey.h"

namespace mcstore {

// "STORAGE OK - 14 devices|drives=4 ...": a line with the status and figures, then a line for all that needs attention.
std::string check_output(const Survey &survey);

// The line for a check that could not be made.
std::string check_failure(const std::string &problem);

}  // namespace mcstore

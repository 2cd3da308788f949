/// What `zupolicy doctor` prints.
#pragma once

#include <iosfwd>

#include "tools/zupolicy/client/doctor/Diagnosis.h"

namespace zupm::tool {

/// A line for each step, and what to do about the first that failed.
void PrintDiagnosis(std::ostream& out, const Diagnosis& diagnosis);
void WriteDiagnosisAsJson(std::ostream& out, const Diagnosis& diagnosis);

}  // namespace zupm::tool

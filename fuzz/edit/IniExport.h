/// A task's settings as an INI file.
#pragma once

#include "tests/support/PolicyFileClient.h"

namespace zupm::fuzz {

/// Exports a task and demands that every setting of its text that an INI file can hold reads back from there, unless
/// another one has the same names but for their case.
void DemandIniExport(const test::TaskClient& task);

}  // namespace zupm::fuzz

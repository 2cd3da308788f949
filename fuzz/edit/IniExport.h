/// A task's settings as an INI file.
#pragma once

#include "tests/support/PolicyFileClient.h"

namespace zupm::fuzz {

/// Exports a task and demands that every setting that an INI file can hold reads back from it. Settings whose names
/// differ only in case are left out.
void DemandIniExport(const test::TaskClient& task);

}  // namespace zupm::fuzz

/// A process that writes one file for ever, until somebody kills it.
#pragma once

#include <string>

#include "KillProgress.h"
#include "tests/support/PolicyFileClient.h"

namespace zupm::test {

/// How the victim writes. Overwriting, after WriteFile to another name, is what the component must not do: it shows
/// that the checks would notice.
enum class WayOfWriting { WriteFile, Overwriting };

/// Writes to `path` and edits again and again. `file` is loaded and edited already: it holds the version after
/// `progress.completed`. Returns only when something fails.
void WriteForEver(PolicyFileClient& file, const std::u16string& path, WayOfWriting way, KillProgress& progress);

}  // namespace zupm::test

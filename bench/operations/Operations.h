/// The operations that are measured, by name.
#pragma once

#include <string_view>

#include "bench/operations/Operation.h"

namespace zupm::bench {

/// Loads a file and frees what was loaded.
[[nodiscard]] Operation Load(const Subject& subject);
/// Loads a file and takes out every product (`number` of them) and task once.
[[nodiscard]] Operation TakeEverythingOut(const Subject& subject);

/// Takes the product `number` out.
[[nodiscard]] Operation GetPolicy(const Subject& subject);
[[nodiscard]] Operation GetSectionSetting(const Subject& subject);
[[nodiscard]] Operation PutExistingSetting(const Subject& subject);
[[nodiscard]] Operation PutAndRemoveNewSetting(const Subject& subject);
[[nodiscard]] Operation AddPolicy(const Subject& subject);
[[nodiscard]] Operation AddTask(const Subject& subject);
/// Enumerates the tasks, `number` of them.
[[nodiscard]] Operation EnumerateTasks(const Subject& subject);

/// Writes a loaded file: the component with WriteFile; as "write, fsync, rename" the same bytes without any work.
[[nodiscard]] Operation WriteFile(const Subject& subject);
[[nodiscard]] Operation WriteFileBuffer(const Subject& subject);
/// Changes one setting of a loaded file and writes it.
[[nodiscard]] Operation EditAndWrite(const Subject& subject);

}  // namespace zupm::bench

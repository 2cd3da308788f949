/// The files that calls may name. Whatever a script does, it stays in one folder.
#pragma once

#include <string>
#include <string_view>

#include "fuzz/calls/Objects.h"
#include "fuzz/support/Input.h"

namespace zupm::fuzz {

/// Puts the folder into its first state: the sample, `input` as a policy file, nothing else.
void ResetFiles(std::string_view input);

/// Demands that nothing but what calls may have written is in the folder.
void DemandNoStrayFiles();

/// Whether a member takes a path; by its number, because a call by name may mean any row of that number.
[[nodiscard]] bool TakesPath(Interfaces interfaces, DISPID id);

/// The sample's path.
[[nodiscard]] std::u16string SamplePath();

/// A path for such a member.
[[nodiscard]] std::u16string MakePath(Input& input);

}  // namespace zupm::fuzz

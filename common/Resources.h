/// Texts from resource modules.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "platform/Modules.h"

namespace zupm {

/// Loads the resource module of that file name for a language from the component's own folder: the language's subfolder
/// (four lower-case hexadecimal digits, such as `0407`) first, then the folder itself, then the same in its
/// PackageFolder; null when none has it. The current folder and the search path are never looked at. What the
/// component's folder holds is its owner's choice, links to elsewhere included: they are followed, and what they lead
/// to is read as data like everything else.
[[nodiscard]] std::shared_ptr<const ResourceModule> LoadResourceDLLW(std::u16string_view fileName,
                                                                     std::uint16_t language);

/// Where LoadResourceDLLW looks instead of the component's own folder; empty restores it. For tests.
void SetResourceFolder(std::u16string folder);

/// A string resource by number; empty when the module is null or has none.
[[nodiscard]] std::u16string GetResString(const ResourceModule* module, std::uint32_t id);

}  // namespace zupm

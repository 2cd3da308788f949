/// The module-wide handle of the resource module, which the texts of exception log lines come from.
#pragma once

#include <memory>

#include "platform/Modules.h"
#include "zuPolicyManager/Results.h"

namespace zupm {

/// An object's part in loading and releasing the resource module. Every class has one as its first member, so that it
/// is destroyed last.
///
/// Lifetime  Destroying any one clears the module-wide handle, whichever objects still live; the next creation loads
///           the module again. A reader that got the module from Current keeps it alive.
/// Threads   Any; the handle is exchanged in one step and never locked for longer.
/// Errors    A result code.
class ResourceModuleUse {
public:
    ResourceModuleUse() noexcept = default;
    ~ResourceModuleUse();
    ResourceModuleUse(const ResourceModuleUse&) = delete;
    ResourceModuleUse& operator=(const ResourceModuleUse&) = delete;

    /// Loads the resource module for the user's default language unless it is loaded. GeneralFailure when there is
    /// none; OutOfMemory.
    [[nodiscard]] static result::Code EnsureLoaded() noexcept;

    /// The module; null between its release and the next creation of an object.
    [[nodiscard]] static std::shared_ptr<const ResourceModule> Current() noexcept;
};

}  // namespace zupm

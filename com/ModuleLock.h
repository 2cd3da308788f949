/// What keeps the module loaded: its live objects and its server locks.
#pragma once

namespace zupm {

/// Counts one more, or one less, reason to keep the module loaded.
void LockModule() noexcept;
void UnlockModule() noexcept;
/// True while there is such a reason.
[[nodiscard]] bool IsModuleLocked() noexcept;

/// One such reason, for the life of an object. It is the first base of the forms of our classes, so it is destroyed
/// after the class itself.
class ModuleReference {
public:
    ModuleReference() noexcept { LockModule(); }
    ~ModuleReference() { UnlockModule(); }
    ModuleReference(const ModuleReference&) = delete;
    ModuleReference& operator=(const ModuleReference&) = delete;
};

}  // namespace zupm

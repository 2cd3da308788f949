/// The module's classes, one row each.
#pragma once

#include <span>

#include "com/ClassFactory.h"

namespace zupm {

/// One creatable class.
struct ObjectMapRow {
    const CLSID& clsid;
    /// The ProgID with its version, null-terminated.
    const OLECHAR* progId;
    ObjectCreator creator;
    /// Number of its registration script.
    unsigned script;
};

using ObjectMap = std::span<const ObjectMapRow>;

/// Hands out the class object of one class of the map; CLASS_E_CLASSNOTAVAILABLE, E_POINTER, E_NOINTERFACE,
/// E_OUTOFMEMORY. The out is null on failure.
[[nodiscard]] HRESULT GetClassObject(ObjectMap map, REFCLSID clsid, REFIID iid, void** out) noexcept;

}  // namespace zupm

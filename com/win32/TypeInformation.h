/// The module's type library, as the operating system reads it.
#pragma once

#include <oaidl.h>

namespace zupm::win32 {

/// The type description of one of the module's dual interfaces, with a reference for the caller. Descriptions are read
/// once and kept until ReleaseTypeInformation: reading the library for every object is slow, and some systems fail when
/// several threads read it at once.
[[nodiscard]] HRESULT TypeInfoOf(REFIID iid, ITypeInfo** info) noexcept;

}  // namespace zupm::win32

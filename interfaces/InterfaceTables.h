/// The interfaces as tables: what calls by name, the type library and the tests go by.
#pragma once

#include "com/Dispatch.h"

namespace zupm {

[[nodiscard]] const InterfaceDescription& TaskInfoInterface() noexcept;
[[nodiscard]] const InterfaceDescription& PolicyTaskInterface() noexcept;
[[nodiscard]] const InterfaceDescription& PolicyProductInterface() noexcept;
[[nodiscard]] const InterfaceDescription& PolicyFileInterface() noexcept;
[[nodiscard]] const InterfaceDescription& PolicyFileEditInterface() noexcept;
[[nodiscard]] const InterfaceDescription& PolicyFileContentsInterface() noexcept;
[[nodiscard]] const InterfaceDescription& PolicySectionsInterface() noexcept;
[[nodiscard]] const InterfaceDescription& PolicyNamesInterface() noexcept;
[[nodiscard]] const InterfaceDescription& PolicyNoticesInterface() noexcept;

}  // namespace zupm

/// The text of a policy file, whatever its encoding.
#pragma once

#include <optional>
#include <string>

namespace zupm::tool {

/// The UTF-8 of a policy file's bytes without signature, by the component's rules: signature, else how "<?" is
/// encoded, else the declaration. Nothing for bytes that the component does not accept either.
[[nodiscard]] std::optional<std::string> DecodeSource(std::string bytes);

}  // namespace zupm::tool

/// The hash of a name.
#pragma once

#include <cstdint>
#include <string_view>

namespace zupm {

/// The hash by which an index keeps a name. It differs from one process to the next, so that nobody can write a file
/// whose names all have the same hash.
[[nodiscard]] std::uint32_t NameHash(std::u16string_view name) noexcept;
/// The same for UTF-8. The hashes of the two forms of a name differ.
[[nodiscard]] std::uint32_t NameHash(std::string_view name) noexcept;

}  // namespace zupm

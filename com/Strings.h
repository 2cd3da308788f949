/// String slots of the interface boundary. Everything inside works on std::u16string.
#pragma once

#include <span>
#include <string_view>

#include "zuPolicyManager/Owners.h"
#include "zuPolicyManager/Results.h"

namespace zupm {

/// Out-strings. A null slot is BadArgument and nothing happens. The new string is made before the old one is freed, so
/// `text` may lie in what the slot holds.
///
/// StoreString frees what the slot holds and stores a copy; AllocationFailed leaves the slot null.
[[nodiscard]] result::Code StoreString(BSTR* slot, std::u16string_view text) noexcept;
/// ReplaceString does the same, but AllocationFailed leaves the slot as it is.
[[nodiscard]] result::Code ReplaceString(BSTR* slot, std::u16string_view text) noexcept;
/// StoreString for a text in pieces, each of them valid UTF-8.
[[nodiscard]] result::Code StoreUtf8(BSTR* slot, std::span<const std::string_view> pieces) noexcept;
/// As StoreString, but what the slot held is overwritten, not freed.
[[nodiscard]] result::Code OverwriteString(BSTR* slot, std::u16string_view text) noexcept;
/// Frees what the slot holds and makes it null; a null slot is ignored.
void ClearString(BSTR* slot) noexcept;

}  // namespace zupm

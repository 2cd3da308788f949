/// Length-prefixed strings of the interface boundary. Everything behind it works on std::u16string.
#pragma once

#include <string>
#include <string_view>

#include "zuPolicyManager/ComBase.h"
#include "zuPolicyManager/Results.h"

namespace zupm {

/// A copy of a string with its embedded nulls; null counts as the empty string.
[[nodiscard]] std::u16string TextOf(BSTR text);

/// A new string, which the caller frees; null when memory ran out or the text is too long for a length prefix.
[[nodiscard]] BSTR AllocateString(std::u16string_view text) noexcept;

/// Out-strings. A null slot is BadArgument and nothing happens. The new string is made before the old one is freed, so
/// `text` may lie in what the slot holds.
///
/// StoreString frees what the slot holds and stores a copy; AllocationFailed leaves the slot null.
[[nodiscard]] result::Code StoreString(BSTR* slot, std::u16string_view text) noexcept;
/// As StoreString, but what the slot held is overwritten, not freed.
[[nodiscard]] result::Code OverwriteString(BSTR* slot, std::u16string_view text) noexcept;
/// Frees what the slot holds and makes it null; a null slot is ignored.
void ClearString(BSTR* slot) noexcept;

/// Owns one length-prefixed string.
class Bstr {
public:
    Bstr() noexcept = default;
    /// Throws std::bad_alloc.
    explicit Bstr(std::u16string_view text);
    ~Bstr() { Reset(); }
    Bstr(Bstr&& other) noexcept : m_text(other.Detach()) {}
    Bstr& operator=(Bstr&& other) noexcept;
    Bstr(const Bstr&) = delete;
    Bstr& operator=(const Bstr&) = delete;

    [[nodiscard]] BSTR Get() const noexcept { return m_text; }
    [[nodiscard]] std::u16string Text() const { return TextOf(m_text); }
    /// The slot for a call that hands out a string; what was held is freed first.
    [[nodiscard]] BSTR* Put() noexcept;
    [[nodiscard]] BSTR Detach() noexcept;
    void Reset() noexcept;

private:
    BSTR m_text = nullptr;
};

}  // namespace zupm

/// Strings of the interfaces, as a client owns them: the one place where tests convert.
#pragma once

#include <ostream>
#include <string>
#include <string_view>
#include <utility>

#include "zuPolicyManager/zuPolicyManager.h"

namespace zupm::test {

/// The text of a string; null reads as empty.
[[nodiscard]] std::u16string Text(BSTR text);

/// A new string, the caller's to free.
[[nodiscard]] BSTR NewString(std::u16string_view text);

/// An ASCII or UTF-8 rendering for messages; lone surrogates come out as the replacement character.
[[nodiscard]] std::string Utf8(std::u16string_view text);

/// The UTF-16 text of valid UTF-8.
[[nodiscard]] std::u16string Utf16(std::string_view text);

/// A string argument; made without a text it is the null string.
class Bstr {
public:
    Bstr() = default;
    Bstr(std::u16string_view text) : m_text(NewString(text)) {}      // NOLINT(google-explicit-constructor)
    Bstr(const std::u16string& text) : m_text(NewString(text)) {}    // NOLINT(google-explicit-constructor)
    Bstr(const char16_t* text) : Bstr(std::u16string_view(text)) {}  // NOLINT(google-explicit-constructor)
    Bstr(Bstr&& other) noexcept : m_text(std::exchange(other.m_text, nullptr)) {}
    Bstr& operator=(Bstr&& other) noexcept
    {
        std::swap(m_text, other.m_text);
        return *this;
    }
    Bstr(const Bstr&) = delete;
    Bstr& operator=(const Bstr&) = delete;
    ~Bstr() { SysFreeString(m_text); }

    [[nodiscard]] BSTR Get() const { return m_text; }
    [[nodiscard]] std::u16string Text() const { return test::Text(m_text); }
    /// The slot itself, for calls that free or replace what it holds.
    [[nodiscard]] BSTR* Slot() { return &m_text; }

private:
    BSTR m_text = nullptr;
};

}  // namespace zupm::test

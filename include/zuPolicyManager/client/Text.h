/// Strings on their way between a client and the component: UTF-8 outside, BSTR inside.
///
/// What is not valid is refused on either way (zupm::InvalidText), and never replaced: bytes that are no UTF-8 (also
/// surrogates, which UTF-8 does not have), and a lone surrogate that the component hands out. A null character is a
/// character like any other: it reaches the component, keeps its place in a task's fields, and is refused by every call
/// that would put it into XML (Unexpected) or into a file's name.
#pragma once

#include <zuPolicyManager/Owners.h>
#include <zuPolicyManager/client/Error.h>
#include <zuPolicyManager/client/Utf.h>

#include <cstddef>
#include <new>
#include <string>
#include <string_view>
#include <vector>

namespace zupm::client {

[[noreturn]] inline void ThrowInvalid(const char* what, std::size_t at)
{
    Throw({result::NotValidInItsEncoding, {}, std::string(what) + std::to_string(at) + ".", {}});
}

/// The units that a text takes as UTF-16. Throws InvalidText.
[[nodiscard]] inline std::size_t Utf16Size(std::string_view text)
{
    std::size_t units = 0;
    for (std::size_t at = 0; at < text.size();) {
        const Character character = Utf8CharacterAt(text, at);
        if (character.length == 0) {
            ThrowInvalid("A text is not valid UTF-8 at byte ", at);
        }
        units += character.value > 0xFFFF ? 2 : 1;
        at += character.length;
    }
    return units;
}

/// A string of the component's, made from UTF-8. Throws InvalidText, std::bad_alloc.
class Argument {
public:
    explicit Argument(std::string_view text)
    {
        OLECHAR* unit = *m_text.Put() = AllocateString(Utf16Size(text));
        if (unit == nullptr) {
            throw std::bad_alloc();
        }
        for (std::size_t at = 0; at < text.size();) {
            const Character character = Utf8CharacterAt(text, at);
            at += character.length;
            if (character.value > 0xFFFF) {
                const char32_t above = character.value - 0x10000;
                *unit++ = static_cast<OLECHAR>(0xD800 + (above >> 10u));
                *unit++ = static_cast<OLECHAR>(0xDC00 + (above & 0x3FFu));
            } else {
                *unit++ = static_cast<OLECHAR>(character.value);
            }
        }
    }

    /// For the length of a call.
    operator BSTR() const noexcept { return m_text.Get(); }  // NOLINT(google-explicit-constructor): it is an argument

private:
    Bstr m_text;
};

/// UTF-8 of a string of the component's; null counts as the empty string. Throws InvalidText, std::bad_alloc.
[[nodiscard]] inline std::string ToText(const Bstr& text)
{
    const OLECHAR* const units = text.Get();
    const std::size_t size = SysStringLen(text.Get());
    std::string out;
    out.reserve(size);
    for (std::size_t at = 0; at < size;) {
        const Character character = Utf16CharacterAt(units, size, at);
        if (character.length == 0) {
            ThrowInvalid("A text of the component holds a lone surrogate at unit ", at);
        }
        AppendUtf8(out, character.value);
        at += character.length;
    }
    return out;
}

/// Joins the parts of a message.
template <class... Parts>
[[nodiscard]] std::string Join(const Parts&... parts)
{
    std::string text;
    static_cast<void>((text.append(std::string_view(parts)), ..., 0));
    return text;
}

}  // namespace zupm::client

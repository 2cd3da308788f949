/// Strings of the interfaces, as a client owns them: the one place where tests convert.
#pragma once

#include <string>
#include <string_view>

#include "zuPolicyManager/Owners.h"

namespace zupm::test {

using zupm::Bstr;

/// The text of a string; null reads as empty.
[[nodiscard]] inline std::u16string Text(BSTR text)
{
    return TextOf(text);
}

/// A new string, which the caller frees.
[[nodiscard]] inline BSTR NewString(std::u16string_view text)
{
    return Bstr(text).Detach();
}

/// An ASCII or UTF-8 rendering for messages; lone surrogates become the replacement character.
[[nodiscard]] std::string Utf8(std::u16string_view text);

/// The UTF-16 text of valid UTF-8.
[[nodiscard]] std::u16string Utf16(std::string_view text);

}  // namespace zupm::test

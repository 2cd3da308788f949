/// The text of a document between a file and the library.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "xml/UtfEncodings.h"

namespace AdvXMLParser {

/// Text, held once as UTF-8, with the encoding of the bytes that it was read from.
///
/// Lifetime  Owns its text. Movable; a parser takes it over without a copy.
/// Invariant The text has no signature, and once it is checked it is valid UTF-8.
class XmlText {
public:
    XmlText() = default;

    /// From valid UTF-8. `encoding` is that of the bytes that it was read from. Text that was never in a file has none,
    /// and its declaration may name any encoding.
    explicit XmlText(std::string utf8, std::optional<UTF_ENCODINGS> encoding = std::nullopt) noexcept;
    /// From the bytes of a file in UTF-8 that nobody has checked yet. The parser does: what its scanner accepts is
    /// valid.
    [[nodiscard]] static XmlText Unchecked(std::string bytes, UTF_ENCODINGS encoding) noexcept;

    [[nodiscard]] const std::string& Utf8() const noexcept { return m_utf8; }
    [[nodiscard]] std::string TakeUtf8() && noexcept { return std::move(m_utf8); }
    [[nodiscard]] std::optional<UTF_ENCODINGS> Encoding() const noexcept { return m_encoding; }
    [[nodiscard]] bool IsChecked() const noexcept { return m_isChecked; }

    /// The text as UTF-16; empty when it is not valid.
    [[nodiscard]] std::u16string Wide() const;

private:
    std::string m_utf8;
    std::optional<UTF_ENCODINGS> m_encoding;
    bool m_isChecked = true;
};

}  // namespace AdvXMLParser

/// The tags and texts of a document, one after the other.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace zupm::tool {

/// A start tag, an end tag, or text between tags.
struct Markup {
    enum class Kind : std::uint8_t { Open, OpenAndClose, Close, Text, Verbatim };

    Kind kind;
    /// Open: the element's name. Text: the text with its references; Verbatim: that of a CDATA section.
    std::string_view text;
    /// Open: what lies between the name and the tag's end.
    std::string_view attributes;
};

/// Takes a well-formed document apart without a copy of it. It remembers no open element, so a document of a million
/// levels costs no more than a flat one. Comments, processing instructions and the DOCTYPE are passed over.
///
/// Errors    Text that is not well-formed may be read to its end or end early, but does no harm.
class TagReader {
public:
    explicit TagReader(std::string_view document) : m_text(document) {}

    /// What comes next; nothing at the end. IsBroken says whether the end is one.
    [[nodiscard]] std::optional<Markup> Next();
    /// Whether reading ended at text that is not well-formed.
    [[nodiscard]] bool IsBroken() const noexcept { return m_broken; }
    /// The byte that follows what was read last.
    [[nodiscard]] std::size_t Position() const noexcept { return m_at; }

private:
    [[nodiscard]] std::optional<Markup> TakeTag();
    [[nodiscard]] std::optional<Markup> TakeText();
    [[nodiscard]] std::optional<Markup> TakeVerbatim();
    [[nodiscard]] std::optional<std::string_view> TakeThrough(std::string_view mark, std::size_t skip);
    void SkipDeclaration();
    [[nodiscard]] std::size_t EndOfTag() const;

    std::string_view m_text;
    std::size_t m_at = 0;
    bool m_broken = false;
};

/// An attribute as the document holds it.
struct RawAttribute {
    std::string_view name;
    std::string_view value;
};

/// Takes the first attribute off those of a start tag; nothing when there is none.
[[nodiscard]] std::optional<RawAttribute> TakeAttribute(std::string_view& attributes);

/// The decoded value of an attribute of a start tag; nothing when the tag does not have it.
[[nodiscard]] std::optional<std::string> AttributeOf(std::string_view attributes, std::string_view name);

/// Appends a text with its references and line ends resolved; `verbatim` text has no references.
void AppendDecoded(std::string& out, std::string_view text, bool verbatim);

}  // namespace zupm::tool

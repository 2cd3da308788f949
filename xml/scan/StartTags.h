/// Start tags, and the end tags that match them.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "xml/scan/Tokens.h"

namespace AdvXMLParser {

/// Reads the tags of elements, level by level.
///
/// The elements of one level are mostly alike: a start tag that begins with the bytes of the last one of its level, up
/// to its first mark, has the same name and the same first attribute, and these are not read again.
///
/// Errors    Throws std::bad_alloc.
class StartTags {
public:
    explicit StartTags(Tokens& tokens) : m_tokens(tokens) {}

    /// Where the start tag ends whose '<' at `tag` was taken; levels count from 1.
    [[nodiscard]] std::uint32_t End(std::uint32_t tag, std::uint32_t level);

    /// Where the end tag of that level's last element ends; its '<' at `tag` was taken.
    [[nodiscard]] std::uint32_t EndOfEndTag(std::uint32_t tag, std::uint32_t level);

    /// Makes the element with the start tag at `tag`, which is well-formed, the last one of its level.
    void Remember(std::uint32_t tag, std::uint32_t level);

private:
    /// The last start tag of a level.
    struct Last {
        std::uint32_t tag = 0;
        std::uint32_t nameLength = 0;
        std::uint32_t prefix = 0;     ///< bytes up to its first mark and with it; 0 when there was no tag
        std::uint32_t attribute = 0;  ///< where its first attribute's name is in it
        std::uint32_t attributeLength = 0;
    };
    /// A name, as a place in the text.
    struct Name {
        std::uint32_t begin;
        std::uint32_t length;
    };

    [[nodiscard]] Last& LastOf(std::uint32_t level);
    [[nodiscard]] std::uint32_t EndOfAlike(std::uint32_t tag, const Last& last);
    [[nodiscard]] std::uint32_t EndOfOther(std::uint32_t tag, Last& last);
    /// The end of a tag whose name, or whose attributes so far, end at `at`.
    [[nodiscard]] std::uint32_t EndAfter(std::uint32_t at);
    [[nodiscard]] std::uint32_t AttributeEnd(std::uint32_t at);
    /// Takes the '>' at `close`.
    [[nodiscard]] std::uint32_t TakeClose(std::uint32_t close);

    [[nodiscard]] std::string_view TextOf(const Name& name) const noexcept
    {
        return m_tokens.Text().substr(name.begin, name.length);
    }
    [[nodiscard]] bool AreNamesUnique();

    Tokens& m_tokens;
    std::vector<Last> m_levels;
    std::vector<Name> m_names;  ///< of the attributes of the tag that is read
};

}  // namespace AdvXMLParser

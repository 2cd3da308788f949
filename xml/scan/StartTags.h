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

    /// Where the start tag ends that begins at the next mark, `tag`; levels count from 1.
    [[nodiscard]] std::uint32_t End(std::uint32_t tag, std::uint32_t level)
    {
        Last& last = LastOf(level);
        const bool isAlike = last.prefix != 0 && m_tokens.IsRepeated(last.tag, tag, last.prefix);
        return isAlike ? EndOfAlike(tag, last) : EndOfOther(tag, last);
    }

    /// Where the end tag ends that begins at the next mark, `tag`, and closes that level's last element.
    [[nodiscard]] std::uint32_t EndOfEndTag(std::uint32_t tag, std::uint32_t level)
    {
        constexpr std::uint32_t kOpen = 2;  // "</"
        const Last& last = m_levels[level];
        if (!m_tokens.IsRepeated(last.tag + 1, tag + kOpen, last.nameLength)) {
            return kNotAccepted;
        }
        const std::uint32_t close = m_tokens.SkipBlanks(tag + kOpen + last.nameLength);
        if (m_tokens[close] != '>') {
            return kNotAccepted;
        }
        m_tokens.Marks().Take(2);
        return close + 1;
    }

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

    [[nodiscard]] Last& LastOf(std::uint32_t level)
    {
        if (level >= m_levels.size()) {
            AddLevel(level);
        }
        return m_levels[level];
    }
    void AddLevel(std::uint32_t level) { m_levels.resize(level + 1); }
    /// The end of a tag that begins like the last one of its level.
    [[nodiscard]] std::uint32_t EndOfAlike(std::uint32_t tag, const Last& last)
    {
        const char quote = m_tokens[tag + last.prefix - 1];
        if (quote == '>') {
            m_tokens.Marks().Take(2);
            return tag + last.prefix;
        }
        // The usual case, a tag with one attribute: its '<', the two quotes and the '>' are its marks.
        const std::uint32_t* const marks = m_tokens.Marks().Ahead(4);
        if (marks != nullptr && m_tokens[marks[2]] == quote && m_tokens[marks[2] + 1] == '>') {
            const std::uint32_t end = marks[2] + 2;
            m_tokens.Marks().Take(4);
            return end;
        }
        return EndOfAlikeValue(tag, last);
    }
    [[nodiscard]] std::uint32_t EndOfAlikeValue(std::uint32_t tag, const Last& last);
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

#include "xml/scan/StartTags.h"

#include <algorithm>
#include <cstddef>

#include "xml/scan/Names.h"

namespace AdvXMLParser {

namespace {

/// More are not taken, whoever reads them.
constexpr std::size_t kMostAttributes = 500'000;

/// Up to here comparing every two names is faster than sorting them.
constexpr std::size_t kFewNames = 12;

}  // namespace

/// The first attribute's value may hold any marks, and more attributes may follow it.
std::uint32_t StartTags::EndOfAlikeValue(std::uint32_t tag, const Last& last)
{
    m_tokens.Marks().Take(2);
    const std::uint32_t valueEnd = m_tokens.ValueEnd(m_tokens[tag + last.prefix - 1]);
    if (valueEnd == kNotAccepted) {
        return kNotAccepted;
    }
    m_names.assign(1, {tag + last.attribute, last.attributeLength});
    return EndAfter(valueEnd + 1);
}

std::uint32_t StartTags::EndOfOther(std::uint32_t tag, Last& last)
{
    last.tag = tag;
    last.nameLength = static_cast<std::uint32_t>(NameLengthAt(m_tokens.At(tag + 1)));
    if (last.nameLength == 0) {
        return kNotAccepted;
    }
    m_tokens.Marks().Next();
    last.prefix = m_tokens.Marks().Peek() + 1 - tag;
    m_names.clear();
    const std::uint32_t end = EndAfter(tag + 1 + last.nameLength);
    // Comparing many names has sorted them.
    const auto first = std::min_element(m_names.begin(), m_names.end(),
                                        [](const Name& left, const Name& right) { return left.begin < right.begin; });
    if (first != m_names.end()) {
        last.attribute = first->begin - tag;
        last.attributeLength = first->length;
    }
    return end;
}

std::uint32_t StartTags::EndAfter(std::uint32_t at)
{
    while (at != kNotAccepted) {
        const std::uint32_t next = m_tokens.SkipBlanks(at);
        if (m_tokens[next] == '>') {
            return TakeClose(next);
        }
        if (m_tokens[next] == '/') {
            return m_tokens[next + 1] == '>' ? TakeClose(next + 1) : kNotAccepted;
        }
        const bool isSeparated = next != at;
        at = isSeparated ? AttributeEnd(next) : kNotAccepted;
    }
    return kNotAccepted;
}

std::uint32_t StartTags::TakeClose(std::uint32_t close)
{
    m_tokens.Marks().Next();
    return AreNamesUnique() ? close + 1 : kNotAccepted;
}

std::uint32_t StartTags::AttributeEnd(std::uint32_t at)
{
    const auto length = static_cast<std::uint32_t>(NameLengthAt(m_tokens.At(at)));
    const std::uint32_t equals = m_tokens.SkipBlanks(at + length);
    if (length == 0 || m_tokens[equals] != '=' || m_names.size() == kMostAttributes) {
        return kNotAccepted;
    }
    const std::uint32_t quote = m_tokens.SkipBlanks(equals + 1);
    if (m_tokens[quote] != '"' && m_tokens[quote] != '\'') {
        return kNotAccepted;
    }
    m_names.push_back({at, length});
    m_tokens.Marks().Next();
    const std::uint32_t valueEnd = m_tokens.ValueEnd(m_tokens[quote]);
    return valueEnd == kNotAccepted ? kNotAccepted : valueEnd + 1;
}

bool StartTags::AreNamesUnique()
{
    if (m_names.size() > kFewNames) {
        std::sort(m_names.begin(), m_names.end(),
                  [this](const Name& left, const Name& right) { return TextOf(left) < TextOf(right); });
        return std::adjacent_find(m_names.begin(), m_names.end(), [this](const Name& left, const Name& right) {
                   return TextOf(left) == TextOf(right);
               }) == m_names.end();
    }
    for (std::size_t i = 1; i < m_names.size(); ++i) {
        const std::string_view name = TextOf(m_names[i]);
        if (std::any_of(m_names.data(), m_names.data() + i,
                        [&](const Name& earlier) { return TextOf(earlier) == name; })) {
            return false;
        }
    }
    return true;
}

void StartTags::Remember(std::uint32_t tag, std::uint32_t level)
{
    Last& last = LastOf(level);
    last.tag = tag;
    last.nameLength = static_cast<std::uint32_t>(NameLengthAt(m_tokens.At(tag + 1)));
}

}  // namespace AdvXMLParser

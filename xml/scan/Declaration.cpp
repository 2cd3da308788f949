#include "xml/scan/Declaration.h"

#include <algorithm>
#include <cstddef>

namespace AdvXMLParser {

namespace {

constexpr std::string_view kBegin = "<?xml";
constexpr std::string_view kBlanks = " \t\r\n";

constexpr bool IsLetter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

/// What the values in a declaration are made of.
constexpr bool IsValueCharacter(char c)
{
    return IsLetter(c) || (c >= '0' && c <= '9') || c == '.' || c == '_' || c == '-';
}

/// Takes the parts of a declaration from the front of its text.
class Parts {
public:
    explicit Parts(std::string_view text) noexcept : m_left(text) {}

    [[nodiscard]] std::size_t Left() const noexcept { return m_left.size(); }

    bool SkipBlanks() noexcept
    {
        const std::size_t blanks = std::min(m_left.find_first_not_of(kBlanks), m_left.size());
        m_left.remove_prefix(blanks);
        return blanks > 0;
    }
    bool Take(std::string_view expected) noexcept
    {
        const bool isThere = m_left.starts_with(expected);
        m_left.remove_prefix(isThere ? expected.size() : 0);
        return isThere;
    }
    /// The value of `name="value"`, which follows white space; nothing when something else comes, and then nothing is
    /// taken.
    std::optional<std::string_view> TakeValueOf(std::string_view name) noexcept
    {
        Parts ahead = *this;
        if (!ahead.SkipBlanks() || !ahead.Take(name)) {
            return std::nullopt;
        }
        ahead.SkipBlanks();
        if (!ahead.Take("=")) {
            return std::nullopt;
        }
        ahead.SkipBlanks();
        const std::optional<std::string_view> value = ahead.TakeQuoted();
        if (value) {
            *this = ahead;
        }
        return value;
    }

private:
    std::optional<std::string_view> TakeQuoted() noexcept
    {
        if (!m_left.starts_with('"') && !m_left.starts_with('\'')) {
            return std::nullopt;
        }
        const auto* const close = std::find_if_not(m_left.begin() + 1, m_left.end(), IsValueCharacter);
        if (close == m_left.end() || *close != m_left.front()) {
            return std::nullopt;
        }
        const std::string_view value = m_left.substr(1, static_cast<std::size_t>(close - m_left.begin()) - 1);
        m_left.remove_prefix(value.size() + 2);
        return value;
    }

    std::string_view m_left;
};

bool IsEncodingName(std::string_view name) noexcept
{
    return !name.empty() && IsLetter(name.front());
}

}  // namespace

bool HasDeclaration(std::string_view text) noexcept
{
    return text.starts_with(kBegin) && text.size() > kBegin.size() &&
           kBlanks.find(text[kBegin.size()]) != std::string_view::npos;
}

std::optional<Declaration> ReadDeclaration(std::string_view text) noexcept
{
    Parts parts(text.substr(kBegin.size()));
    if (parts.TakeValueOf("version") != "1.0") {
        return std::nullopt;
    }
    const std::optional<std::string_view> encoding = parts.TakeValueOf("encoding");
    if (encoding && !IsEncodingName(*encoding)) {
        return std::nullopt;
    }
    const std::optional<std::string_view> standalone = parts.TakeValueOf("standalone");
    if (standalone && standalone != "yes" && standalone != "no") {
        return std::nullopt;
    }
    parts.SkipBlanks();
    if (!parts.Take("?>")) {
        return std::nullopt;
    }
    return Declaration{static_cast<std::uint32_t>(text.size() - parts.Left()), encoding.value_or(std::string_view())};
}

}  // namespace AdvXMLParser

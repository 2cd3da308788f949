#include "module/RegistryScriptTokens.h"

#include <algorithm>
#include <utility>

namespace zupm {

namespace {

constexpr char kQuote = '\'';

constexpr bool IsWordCharacter(char c)
{
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '.' || c == '-' ||
           c == '_';
}

constexpr bool IsPrintable(char c)
{
    return c >= ' ' && c <= '~';
}

}  // namespace

ScriptToken ScriptTokens::Next()
{
    SkipBlanks();
    if (m_rest.empty()) {
        return {ScriptTokenKind::End, m_line};
    }
    switch (m_rest.front()) {
        case '{':
            return TakeMark(ScriptTokenKind::Open);
        case '}':
            return TakeMark(ScriptTokenKind::Close);
        case '=':
            return TakeMark(ScriptTokenKind::Equals);
        case kQuote:
            return TakeText();
        default:
            return TakeWord();
    }
}

void ScriptTokens::SkipBlanks() noexcept
{
    while (!m_rest.empty()) {
        const char c = m_rest.front();
        if (c != ' ' && c != '\t' && c != '\r' && c != '\n') {
            return;
        }
        m_line += c == '\n' ? 1U : 0U;
        m_rest.remove_prefix(1);
    }
}

ScriptToken ScriptTokens::TakeMark(ScriptTokenKind kind)
{
    m_rest.remove_prefix(1);
    return {kind, m_line};
}

ScriptToken ScriptTokens::TakeWord()
{
    const auto length = static_cast<std::size_t>(std::ranges::find_if_not(m_rest, IsWordCharacter) - m_rest.begin());
    if (length == 0) {
        return Fail("a character that no word begins with");
    }
    ScriptToken word{ScriptTokenKind::Word, m_line, std::string(m_rest.substr(0, length))};
    m_rest.remove_prefix(length);
    return word;
}

ScriptToken ScriptTokens::TakeText()
{
    std::string text;
    for (std::size_t i = 1; i < m_rest.size(); ++i) {
        if (!IsPrintable(m_rest[i])) {
            return Fail("a character that a text must not hold, or a text without its end");
        }
        if (m_rest[i] == kQuote) {
            const bool isDoubled = i + 1 < m_rest.size() && m_rest[i + 1] == kQuote;
            if (!isDoubled) {
                m_rest.remove_prefix(i + 1);
                return {ScriptTokenKind::Text, m_line, std::move(text)};
            }
            ++i;
        }
        text += m_rest[i];
    }
    return Fail("a text without its end");
}

ScriptToken ScriptTokens::Fail(std::string_view reason)
{
    m_rest = {};
    return {ScriptTokenKind::Invalid, m_line, {}, reason};
}

}  // namespace zupm

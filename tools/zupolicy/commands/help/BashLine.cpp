#include "tools/zupolicy/commands/help/BashLine.h"

namespace zupm::tool {
namespace {

constexpr std::string_view kWordEnds = " \t\n";
/// The characters before which a backslash means something in double quotes.
constexpr std::string_view kEscapableInQuotes = "$`\"\\";
/// Besides letters and digits.
constexpr std::string_view kUnquoted = "_@%+=:,./-";

bool NeedsNoQuote(char character)
{
    const auto byte = static_cast<unsigned char>(character);
    return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
           (character >= '0' && character <= '9') || byte >= 0x80 ||
           kUnquoted.find(character) != std::string_view::npos;
}

std::string WithBackslashes(std::string_view text)
{
    std::string quoted;
    for (const char character : text) {
        if (!NeedsNoQuote(character)) {
            quoted += '\\';
        }
        quoted += character;
    }
    return quoted;
}

std::string InSingleQuotes(std::string_view text)
{
    std::string quoted;
    for (const char character : text) {
        quoted += character == '\'' ? std::string("'\\''") : std::string(1, character);
    }
    return quoted;
}

/// Nothing when there is a "!": no backslash keeps an interactive shell from taking it for one of its own.
std::optional<std::string> InDoubleQuotes(std::string_view text)
{
    std::string quoted;
    for (const char character : text) {
        if (character == '!') {
            return std::nullopt;
        }
        if (kEscapableInQuotes.find(character) != std::string_view::npos) {
            quoted += '\\';
        }
        quoted += character;
    }
    return quoted;
}

}  // namespace

BashLine::BashLine(std::string_view line, std::string_view breaks)
{
    for (const char character : line) {
        Take(character, breaks);
    }
    // The first word is the program.
    if (!m_words.empty()) {
        m_words.erase(m_words.begin());
    }
}

void BashLine::EndWord()
{
    if (m_isInWord) {
        m_words.push_back(m_current);
    }
    m_current.clear();
    m_kept = 0;
    m_isInWord = false;
}

void BashLine::TakeUnquoted(char character, std::string_view breaks)
{
    if (kWordEnds.find(character) != std::string_view::npos) {
        EndWord();
        return;
    }
    m_isInWord = true;
    if (character == '\\') {
        m_isEscaped = true;
    } else if (character == '\'' || character == '"') {
        m_quote = character;
        m_keptBeforeQuote = m_current.size();
    } else {
        m_current += character;
        if (breaks.find(character) != std::string_view::npos) {
            m_kept = m_current.size();
        }
    }
}

void BashLine::Take(char character, std::string_view breaks)
{
    if (m_isEscaped) {
        if (m_quote == '"' && kEscapableInQuotes.find(character) == std::string_view::npos) {
            m_current += '\\';
        }
        m_current += character;
        m_isEscaped = false;
    } else if (m_quote == '\0') {
        TakeUnquoted(character, breaks);
    } else if (character == m_quote) {
        m_quote = '\0';
    } else if (character == '\\' && m_quote == '"') {
        m_isEscaped = true;
    } else {
        m_current += character;
    }
}

std::optional<std::string> BashLine::ReplacementBy(std::string_view argument) const
{
    // After a quote that is open Bash's word begins.
    const std::size_t kept = m_quote == '\0' ? m_kept : m_keptBeforeQuote;
    if (m_isEscaped || !argument.starts_with(std::string_view(m_current).substr(0, kept))) {
        return std::nullopt;
    }
    const std::string_view rest = argument.substr(kept);
    switch (m_quote) {
        case '\'':
            return InSingleQuotes(rest);
        case '"':
            return InDoubleQuotes(rest);
        default:
            return WithBackslashes(rest);
    }
}

}  // namespace zupm::tool

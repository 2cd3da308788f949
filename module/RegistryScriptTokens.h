/// The words of a registration script.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace zupm {

enum class ScriptTokenKind { Word, Text, Open, Close, Equals, End, Invalid };

/// One token: what a word or a text says, and why an invalid one is.
struct ScriptToken {
    ScriptTokenKind kind;
    std::size_t line;
    std::string text = {};
    std::string_view reason = {};
};

/// Splits a script into tokens.
///
/// Lifetime    The text must outlive it.
/// Errors      An invalid token, which is then the last one.
/// Invariants  Words and texts are printable ASCII.
class ScriptTokens {
public:
    explicit ScriptTokens(std::string_view text) noexcept : m_rest(text) {}

    [[nodiscard]] ScriptToken Next();

private:
    void SkipBlanks() noexcept;
    [[nodiscard]] ScriptToken TakeMark(ScriptTokenKind kind);
    [[nodiscard]] ScriptToken TakeWord();
    [[nodiscard]] ScriptToken TakeText();
    [[nodiscard]] ScriptToken Fail(std::string_view reason);

    std::string_view m_rest;
    std::size_t m_line = 1;
};

}  // namespace zupm

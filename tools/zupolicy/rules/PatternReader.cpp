#include "tools/zupolicy/rules/PatternReader.h"

#include <zuPolicyManager/client/Utf.h>

#include <algorithm>
#include <optional>
#include <span>
#include <utility>

namespace zupm::rules {
namespace {

constexpr std::size_t kMostGroups = 50;     ///< that lie in each other
constexpr std::uint32_t kMostTimes = 1000;  ///< of a repeat
constexpr char32_t kLastCharacter = 0x10FFFF;

using Ranges = std::vector<CharacterSet::Range>;

constexpr CharacterSet::Range kDigits[] = {{U'0', U'9'}};
constexpr CharacterSet::Range kWords[] = {{U'0', U'9'}, {U'A', U'Z'}, {U'_', U'_'}, {U'a', U'z'}};
constexpr CharacterSet::Range kBlanks[] = {{U'\t', U'\r'},   {U' ', U' '},     {0xA0, 0xA0},     {0x1680, 0x1680},
                                           {0x2000, 0x200A}, {0x2028, 0x2029}, {0x202F, 0x202F}, {0x205F, 0x205F},
                                           {0x3000, 0x3000}, {0xFEFF, 0xFEFF}};
constexpr CharacterSet::Range kLineEnds[] = {{U'\n', U'\n'}, {U'\r', U'\r'}, {0x2028, 0x2029}};

Ranges All(std::span<const CharacterSet::Range> ranges)
{
    return {ranges.begin(), ranges.end()};
}

/// All characters that the ranges, which are sorted, do not have.
Ranges Others(std::span<const CharacterSet::Range> ranges)
{
    Ranges others;
    char32_t next = 0;
    for (const auto& range : ranges) {
        if (range.first > next) {
            others.push_back({next, range.first - 1});
        }
        next = range.last + 1;
    }
    others.push_back({next, kLastCharacter});
    return others;
}

/// The ranges of an escape such as `\d`; nothing for another one.
std::optional<Ranges> ClassOf(char32_t letter)
{
    switch (letter) {
        case U'd':
            return All(kDigits);
        case U'D':
            return Others(kDigits);
        case U'w':
            return All(kWords);
        case U'W':
            return Others(kWords);
        case U's':
            return All(kBlanks);
        case U'S':
            return Others(kBlanks);
        default:
            return std::nullopt;
    }
}

std::optional<char32_t> ControlOf(char32_t letter)
{
    constexpr std::pair<char32_t, char32_t> kControls[] = {{U't', U'\t'}, {U'n', U'\n'}, {U'r', U'\r'},
                                                           {U'f', U'\f'}, {U'v', U'\v'}, {U'0', U'\0'}};
    for (const auto& [name, control] : kControls) {
        if (name == letter) {
            return control;
        }
    }
    return std::nullopt;
}

class Reader {
public:
    explicit Reader(std::string_view text) : m_text(text) {}

    PatternNode ReadAll()
    {
        PatternNode all = Choice();
        if (!IsAtEnd()) {
            Refuse("this bracket closes nothing");
        }
        return all;
    }

private:
    [[noreturn]] void Refuse(const char* message) const { throw PatternComplaint{m_at, message}; }

    [[nodiscard]] bool IsAtEnd() const { return m_at == m_text.size(); }
    [[nodiscard]] bool Sees(std::string_view text) const { return m_text.substr(m_at).starts_with(text); }
    bool Take(std::string_view text)
    {
        const bool isNext = Sees(text);
        m_at += isNext ? text.size() : 0;
        return isNext;
    }
    char32_t TakeCharacter()
    {
        if (IsAtEnd()) {
            Refuse("the expression ends too early");
        }
        const client::Character character = client::Utf8CharacterAt(m_text, m_at);
        m_at += std::max(character.length, std::size_t{1});
        return character.value;
    }

    PatternNode Choice();
    PatternNode Sequence();
    PatternNode Repeated(PatternNode part);
    PatternNode Atom();
    PatternNode Group();
    PatternNode Escape();
    PatternNode Set();
    Ranges SetItem();
    char32_t EscapedCharacter();
    char32_t HexCharacter(std::size_t digits);
    std::optional<std::uint32_t> TakeNumber();
    bool TakeTimes(PatternNode& repeat);

    std::string_view m_text;
    std::size_t m_at = 0;
    std::size_t m_depth = 0;
};

PatternNode OfSet(Ranges ranges, bool isNegated = false)
{
    PatternNode node;
    node.kind = PatternNode::Kind::Set;
    node.set = {std::move(ranges), isNegated};
    return node;
}

PatternNode OfKind(PatternNode::Kind kind)
{
    PatternNode node;
    node.kind = kind;
    return node;
}

PatternNode Reader::Choice()
{
    PatternNode choice = OfKind(PatternNode::Kind::Choice);
    do {
        choice.parts.push_back(Sequence());
    } while (Take("|"));
    return choice;
}

PatternNode Reader::Sequence()
{
    PatternNode sequence;
    while (!IsAtEnd() && !Sees("|") && !Sees(")")) {
        sequence.parts.push_back(Repeated(Atom()));
    }
    return sequence;
}

std::optional<std::uint32_t> Reader::TakeNumber()
{
    std::uint32_t number = 0;
    const std::size_t begin = m_at;
    for (; !IsAtEnd() && m_text[m_at] >= '0' && m_text[m_at] <= '9'; ++m_at) {
        number = std::min(number * 10 + static_cast<std::uint32_t>(m_text[m_at] - '0'), kMostTimes + 1);
    }
    return m_at == begin ? std::nullopt : std::optional(number);
}

/// Takes `{2}`, `{2,}` or `{2,5}`. A bracket with anything else in it is a character like others.
bool Reader::TakeTimes(PatternNode& repeat)
{
    const std::size_t begin = m_at;
    if (!Take("{")) {
        return false;
    }
    const std::optional<std::uint32_t> least = TakeNumber();
    std::optional<std::uint32_t> most = least;
    if (least && Take(",")) {
        most = Sees("}") ? PatternNode::kNoLimit : TakeNumber();
    }
    if (!least || !most || !Take("}")) {
        m_at = begin;
        return false;
    }
    if (*least > kMostTimes || (*most > kMostTimes && *most != PatternNode::kNoLimit)) {
        m_at = begin;
        Refuse("a part can be repeated at most 1000 times");
    }
    if (*most < *least) {
        m_at = begin;
        Refuse("the larger number comes last");
    }
    repeat.least = *least;
    repeat.most = *most;
    return true;
}

PatternNode Reader::Repeated(PatternNode part)
{
    PatternNode repeat = OfKind(PatternNode::Kind::Repeat);
    repeat.most = PatternNode::kNoLimit;
    if (Take("+")) {
        repeat.least = 1;
    } else if (Take("?")) {
        repeat.most = 1;
    } else if (!Take("*") && !TakeTimes(repeat)) {
        return part;
    }
    // Whether a repeat takes much or little first makes no difference to whether the whole fits.
    static_cast<void>(Take("?"));
    if (Sees("*") || Sees("+") || Sees("?")) {
        Refuse("nothing precedes this sign that it could repeat");
    }
    repeat.parts.push_back(std::move(part));
    return repeat;
}

PatternNode Reader::Atom()
{
    if (Sees("*") || Sees("+") || Sees("?")) {
        Refuse("nothing precedes this sign that it could repeat");
    }
    if (Take("(")) {
        return Group();
    }
    if (Take("[")) {
        return Set();
    }
    if (Take("\\")) {
        return Escape();
    }
    if (Take("^")) {
        return OfKind(PatternNode::Kind::Begin);
    }
    if (Take("$")) {
        return OfKind(PatternNode::Kind::End);
    }
    if (Take(".")) {
        return OfSet(All(kLineEnds), true);
    }
    const char32_t character = TakeCharacter();
    return OfSet({{character, character}});
}

PatternNode Reader::Group()
{
    if (Sees("?") && !Take("?:")) {
        Refuse("groups that look around or have names are not supported");
    }
    if (++m_depth > kMostGroups) {
        Refuse("too many groups lie in each other");
    }
    PatternNode inside = Choice();
    if (!Take(")")) {
        Refuse("a bracket is not closed");
    }
    --m_depth;
    return inside;
}

PatternNode Reader::Escape()
{
    if (Take("b")) {
        return OfKind(PatternNode::Kind::WordEdge);
    }
    if (Take("B")) {
        return OfKind(PatternNode::Kind::NoWordEdge);
    }
    const std::size_t begin = m_at;
    if (!IsAtEnd()) {
        if (std::optional<Ranges> ranges = ClassOf(TakeCharacter())) {
            return OfSet(*std::move(ranges));
        }
        m_at = begin;
    }
    const char32_t character = EscapedCharacter();
    return OfSet({{character, character}});
}

/// What follows a backslash: a control character, a number, or a sign that means itself.
char32_t Reader::EscapedCharacter()
{
    const std::size_t begin = m_at;
    const char32_t letter = TakeCharacter();
    if (const std::optional<char32_t> control = ControlOf(letter)) {
        return *control;
    }
    if (letter == U'x') {
        return HexCharacter(2);
    }
    if (letter == U'u') {
        return HexCharacter(4);
    }
    const bool isWord =
        std::ranges::any_of(kWords, [&](const auto& range) { return letter >= range.first && letter <= range.last; });
    if (isWord) {
        m_at = begin;
        Refuse("this escape is not supported");
    }
    return letter;
}

char32_t Reader::HexCharacter(std::size_t digits)
{
    char32_t character = 0;
    for (std::size_t i = 0; i < digits; ++i) {
        constexpr std::string_view kHex = "0123456789abcdef0123456789ABCDEF";
        const char32_t digit = TakeCharacter();
        const std::size_t value = digit < 0x80 ? kHex.find(static_cast<char>(digit)) : kHex.npos;
        if (value == kHex.npos) {
            Refuse("a hexadecimal digit is missing");
        }
        character = character * 16 + static_cast<char32_t>(value % 16);
    }
    return character;
}

PatternNode Reader::Set()
{
    const bool isNegated = Take("^");
    Ranges ranges;
    while (!Take("]")) {
        if (IsAtEnd()) {
            Refuse("a bracket is not closed");
        }
        Ranges item = SetItem();
        if (Sees("-") && !Sees("-]")) {
            ++m_at;
            const Ranges last = SetItem();
            if (item.size() != 1 || last.size() != 1 || item[0].first != item[0].last ||
                last[0].first != last[0].last || item[0].first > last[0].last) {
                Refuse("this is no range of characters");
            }
            item[0].last = last[0].last;
        }
        ranges.insert(ranges.end(), item.begin(), item.end());
    }
    return OfSet(std::move(ranges), isNegated);
}

Ranges Reader::SetItem()
{
    if (!Take("\\")) {
        const char32_t character = TakeCharacter();
        return {{character, character}};
    }
    if (Take("b")) {
        return {{U'\b', U'\b'}};
    }
    if (Take("-")) {
        return {{U'-', U'-'}};
    }
    const std::size_t begin = m_at;
    if (std::optional<Ranges> ranges = ClassOf(TakeCharacter())) {
        return *std::move(ranges);
    }
    m_at = begin;
    const char32_t character = EscapedCharacter();
    return {{character, character}};
}

}  // namespace

PatternNode ReadPattern(std::string_view expression)
{
    return Reader(expression).ReadAll();
}

}  // namespace zupm::rules

#include "tools/zupolicy/rules/Pattern.h"

#include <zuPolicyManager/client/Utf.h>

#include <algorithm>
#include <optional>
#include <utility>

#include "tools/zupolicy/rules/PatternReader.h"

namespace zupm::rules {
namespace {

using Kind = PatternStep::Kind;

constexpr std::size_t kMostSteps = 2'000;

/// Makes the steps of an expression, each part before the steps that follow it.
class Maker {
public:
    Maker(std::vector<PatternStep>& steps, std::vector<CharacterSet>& sets) : m_steps(steps), m_sets(sets) {}

    void Make(const PatternNode& node)
    {
        switch (node.kind) {
            case PatternNode::Kind::Set:
                m_sets.push_back(node.set);
                Add(Kind::Character, static_cast<std::uint32_t>(m_sets.size() - 1));
                break;
            case PatternNode::Kind::Begin:
                Add(Kind::Begin);
                break;
            case PatternNode::Kind::End:
                Add(Kind::End);
                break;
            case PatternNode::Kind::WordEdge:
                Add(Kind::WordEdge);
                break;
            case PatternNode::Kind::NoWordEdge:
                Add(Kind::NoWordEdge);
                break;
            case PatternNode::Kind::Sequence:
                std::ranges::for_each(node.parts, [this](const PatternNode& part) { Make(part); });
                break;
            case PatternNode::Kind::Choice:
                MakeChoice(node);
                break;
            case PatternNode::Kind::Repeat:
                MakeRepeat(node);
                break;
        }
    }
    /// Each step leads to the one after it until it is changed.
    std::uint32_t Add(Kind kind, std::uint32_t set = 0)
    {
        if (m_steps.size() == kMostSteps) {
            throw PatternComplaint{0, "the expression is too long, or repeats too much"};
        }
        const std::uint32_t next = Next() + 1;
        m_steps.push_back({kind, set, next, next});
        return next - 1;
    }

private:
    [[nodiscard]] std::uint32_t Next() const { return static_cast<std::uint32_t>(m_steps.size()); }

    void MakeChoice(const PatternNode& node)
    {
        std::vector<std::uint32_t> ends;
        for (std::size_t i = 0; i + 1 < node.parts.size(); ++i) {
            const std::uint32_t fork = Add(Kind::Fork);
            Make(node.parts[i]);
            ends.push_back(Add(Kind::Fork));
            m_steps[fork].other = Next();
        }
        Make(node.parts.back());
        for (const std::uint32_t end : ends) {
            m_steps[end].next = m_steps[end].other = Next();
        }
    }

    void MakeRepeat(const PatternNode& node)
    {
        const PatternNode& part = node.parts.front();
        for (std::uint32_t i = 0; i < node.least; ++i) {
            Make(part);
        }
        if (node.most == PatternNode::kNoLimit) {
            const std::uint32_t fork = Add(Kind::Fork);
            Make(part);
            const std::uint32_t back = Add(Kind::Fork);
            m_steps[back].next = m_steps[back].other = fork;
            m_steps[fork].other = Next();
            return;
        }
        std::vector<std::uint32_t> forks;
        for (std::uint32_t i = node.least; i < node.most; ++i) {
            forks.push_back(Add(Kind::Fork));
            Make(part);
        }
        for (const std::uint32_t fork : forks) {
            m_steps[fork].other = Next();
        }
    }

    std::vector<PatternStep>& m_steps;
    std::vector<CharacterSet>& m_sets;
};

bool IsWord(std::optional<char32_t> character)
{
    return character && ((*character >= U'0' && *character <= U'9') || (*character >= U'A' && *character <= U'Z') ||
                         *character == U'_' || (*character >= U'a' && *character <= U'z'));
}

/// What lies on both sides of a place in the text.
struct Neighbours {
    std::optional<char32_t> before;
    std::optional<char32_t> after;

    /// Whether a step that takes no character can be passed here.
    [[nodiscard]] bool Allow(Kind kind) const
    {
        switch (kind) {
            case Kind::Begin:
                return !before;
            case Kind::End:
                return !after;
            case Kind::WordEdge:
                return IsWord(before) != IsWord(after);
            case Kind::NoWordEdge:
                return IsWord(before) == IsWord(after);
            default:
                return true;
        }
    }
};

/// The steps that have been reached at one place of the text.
class Front {
public:
    explicit Front(const std::vector<PatternStep>& steps) : m_steps(steps), m_isKnown(steps.size()) {}

    /// Adds a step, and those that can be reached from it without a character.
    void Add(std::uint32_t first, const Neighbours& neighbours)
    {
        m_open.push_back(first);
        while (!m_open.empty()) {
            const std::uint32_t number = m_open.back();
            m_open.pop_back();
            const PatternStep& step = m_steps[number];
            if (m_isKnown[number] || !neighbours.Allow(step.kind)) {
                continue;
            }
            m_isKnown[number] = true;
            m_reached.push_back(number);
            if (step.kind == Kind::Match) {
                m_hasMatch = true;
            } else if (step.kind != Kind::Character) {
                m_open.push_back(step.next);
                m_open.push_back(step.other);
            }
        }
    }
    void Clear()
    {
        for (const std::uint32_t number : m_reached) {
            m_isKnown[number] = false;
        }
        m_reached.clear();
    }
    [[nodiscard]] const std::vector<std::uint32_t>& Reached() const { return m_reached; }
    [[nodiscard]] bool HasMatch() const { return m_hasMatch; }

private:
    const std::vector<PatternStep>& m_steps;
    std::vector<bool> m_isKnown;
    std::vector<std::uint32_t> m_reached;
    std::vector<std::uint32_t> m_open;
    bool m_hasMatch = false;
};

/// Takes one character off the front; nothing at the end. A byte that is no valid UTF-8 counts as a character.
std::optional<char32_t> Take(std::string_view& text)
{
    if (text.empty()) {
        return std::nullopt;
    }
    const client::Character character = client::Utf8CharacterAt(text, 0);
    text.remove_prefix(std::max(character.length, std::size_t{1}));
    return character.length == 0 ? U'\uFFFD' : character.value;
}

}  // namespace

bool CharacterSet::Has(char32_t character) const
{
    const bool isIn = std::ranges::any_of(
        ranges, [&](const Range& range) { return character >= range.first && character <= range.last; });
    return isIn != isNegated;
}

Pattern::Pattern(std::string_view expression)
{
    Maker maker(m_steps, m_sets);
    maker.Make(ReadPattern(expression));
    maker.Add(Kind::Match);
}

bool Pattern::IsIn(std::string_view text) const
{
    Front one(m_steps);
    Front other(m_steps);
    Front* now = &one;
    Front* then = &other;
    Neighbours place{std::nullopt, Take(text)};
    now->Add(0, place);
    while (place.after && !now->HasMatch()) {
        const char32_t character = *place.after;
        place = {character, Take(text)};
        for (const std::uint32_t number : now->Reached()) {
            const PatternStep& step = m_steps[number];
            if (step.kind == Kind::Character && m_sets[step.set].Has(character)) {
                then->Add(step.next, place);
            }
        }
        // A fit may begin at any character.
        then->Add(0, place);
        now->Clear();
        std::swap(now, then);
    }
    return now->HasMatch();
}

}  // namespace zupm::rules

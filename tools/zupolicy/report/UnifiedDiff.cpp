#include "tools/zupolicy/report/UnifiedDiff.h"

#include <algorithm>
#include <cstddef>
#include <deque>
#include <ostream>
#include <sstream>
#include <vector>

#include "tools/zupolicy/model/LineDiff.h"
#include "tools/zupolicy/report/Visible.h"

namespace zupm::tool {
namespace {

constexpr std::size_t kContext = 3;

using Lines = std::vector<std::string_view>;

/// As model::LinesOf, but a line break in a hidden part ends no line.
Lines LinesOf(std::string_view text, const std::vector<TextPart>& hidden)
{
    Lines lines;
    auto part = hidden.begin();
    std::size_t begin = 0;
    for (std::size_t at = text.find('\n'); at != text.npos; at = text.find('\n', at)) {
        while (part != hidden.end() && part->end <= at) {
            ++part;
        }
        if (part != hidden.end() && part->begin <= at) {
            at = part->end;
            continue;
        }
        lines.push_back(text.substr(begin, ++at - begin));
        begin = at;
    }
    if (begin != text.size()) {
        lines.push_back(text.substr(begin));
    }
    return lines;
}

/// The lines of one side: those that are compared, and those that are printed. They refer to the text.
class SideLines {
public:
    SideLines(std::string_view text, const std::vector<TextPart>& hidden)
        : m_exact(LinesOf(text, hidden)), m_shown(m_exact)
    {
        auto part = hidden.begin();
        for (std::string_view& line : m_shown) {
            const auto begin = static_cast<std::size_t>(line.data() - text.data());
            const std::size_t end = begin + line.size();
            if (part == hidden.end() || part->begin >= end) {
                continue;
            }
            std::string shown;
            std::size_t copied = begin;
            for (; part != hidden.end() && part->begin < end; ++part) {
                shown += text.substr(copied, part->begin - copied);
                shown += kHidden;
                copied = part->end;
            }
            line = m_replaced.emplace_back(shown.append(text.substr(copied, end - copied)));
        }
    }
    ~SideLines() = default;
    SideLines(const SideLines&) = delete;
    SideLines& operator=(const SideLines&) = delete;

    [[nodiscard]] const Lines& Exact() const { return m_exact; }
    [[nodiscard]] const Lines& Shown() const { return m_shown; }

private:
    Lines m_exact;
    Lines m_shown;
    std::deque<std::string> m_replaced;  ///< lines with hidden parts, as they are printed
};

/// Writes hunks: changes with the lines around them.
class Hunks {
public:
    Hunks(const Lines& before, const Lines& after, Form form, std::ostream& out)
        : m_before(before), m_after(after), m_form(form), m_out(out)
    {
    }

    void Write(const std::vector<model::LineRun>& runs)
    {
        for (const model::LineRun& run : runs) {
            Keep(run.kept, run.removed != 0 || run.added != 0);
            Replace(run.removed, run.added);
        }
        End();
    }

private:
    /// Lines that both have; `isFollowed` when a change comes after them.
    void Keep(std::size_t count, bool isFollowed);
    void Replace(std::size_t removed, std::size_t added);
    void End();
    /// Takes lines that both have into the hunk.
    void AddContext(std::size_t count);
    void Skip(std::size_t count)
    {
        m_oldAt += count;
        m_newAt += count;
    }
    void Put(char sign, std::string_view line);
    void PutText(std::string_view line);
    [[nodiscard]] static std::string Range(std::size_t start, std::size_t count);

    const Lines& m_before;
    const Lines& m_after;
    Form m_form;
    std::ostream& m_out;
    std::size_t m_oldAt = 0;
    std::size_t m_newAt = 0;
    bool m_isOpen = false;
    std::size_t m_oldStart = 0;
    std::size_t m_newStart = 0;
    std::ostringstream m_body;
};

void Hunks::Keep(std::size_t count, bool isFollowed)
{
    const std::size_t after = m_isOpen ? std::min(count, kContext) : 0;
    const std::size_t before = isFollowed ? std::min(count, kContext) : 0;
    if (m_isOpen && isFollowed && count <= 2 * kContext) {
        AddContext(count);
        return;
    }
    AddContext(after);
    End();
    Skip(count - after - before);
    if (isFollowed) {
        m_isOpen = true;
        m_oldStart = m_oldAt;
        m_newStart = m_newAt;
        AddContext(before);
    }
}

void Hunks::AddContext(std::size_t count)
{
    for (std::size_t i = 0; i < count; ++i) {
        Put(' ', m_before[m_oldAt + i]);
    }
    Skip(count);
}

void Hunks::Replace(std::size_t removed, std::size_t added)
{
    for (std::size_t i = 0; i < removed; ++i) {
        Put('-', m_before[m_oldAt++]);
    }
    for (std::size_t i = 0; i < added; ++i) {
        Put('+', m_after[m_newAt++]);
    }
}

/// A range without lines is named by the line before it.
std::string Hunks::Range(std::size_t start, std::size_t count)
{
    return std::to_string(start + (count == 0 ? 0 : 1)) + (count == 1 ? "" : "," + std::to_string(count));
}

void Hunks::End()
{
    if (m_isOpen) {
        m_out << "@@ -" << Range(m_oldStart, m_oldAt - m_oldStart) << " +" << Range(m_newStart, m_newAt - m_newStart)
              << " @@\n"
              << m_body.view();
        m_body.str({});
        m_isOpen = false;
    }
}

void Hunks::Put(char sign, std::string_view line)
{
    const bool isEnded = line.ends_with('\n');
    line.remove_suffix(isEnded ? 1 : 0);
    m_body << sign;
    PutText(line);
    m_body << (isEnded ? "\n" : "\n\\ No newline at end of file\n");
}

void Hunks::PutText(std::string_view line)
{
    if (m_form == Form::Exact) {
        m_body << line;
        return;
    }
    line.remove_suffix(line.ends_with('\r') ? 1 : 0);
    for (std::size_t tab = line.find('\t'); tab != line.npos; tab = line.find('\t')) {
        WriteVisible(m_body, line.substr(0, tab), Backslash::Kept);
        m_body << '\t';
        line.remove_prefix(tab + 1);
    }
    WriteVisible(m_body, line, Backslash::Kept);
}

void PutName(std::ostream& out, const char* sign, std::string_view name)
{
    out << sign;
    WriteVisible(out, name, Backslash::Kept);
    out << '\n';
}

const char* ColourOf(std::string_view line)
{
    if (line.starts_with("--- ") || line.starts_with("+++ ")) {
        return "\x1b[1m";
    }
    switch (line.empty() ? ' ' : line.front()) {
        case '@':
            return "\x1b[36m";
        case '-':
            return "\x1b[31m";
        case '+':
            return "\x1b[32m";
        default:
            return nullptr;
    }
}

}  // namespace

std::string UnifiedDiff(const TwoTexts& texts, Form form)
{
    if (texts.before == texts.after) {
        return {};
    }
    std::ostringstream out;
    PutName(out, "--- ", texts.oldName);
    PutName(out, "+++ ", texts.newName);
    const SideLines before(texts.before, texts.hiddenBefore);
    const SideLines after(texts.after, texts.hiddenAfter);
    Hunks(before.Shown(), after.Shown(), form, out).Write(model::CompareLines(before.Exact(), after.Exact()));
    return std::move(out).str();
}

void WriteDiff(std::ostream& out, std::string_view diff, bool hasColour)
{
    if (!hasColour) {
        out << diff;
        return;
    }
    for (std::string_view line : model::LinesOf(diff)) {
        line.remove_suffix(line.ends_with('\n') ? 1 : 0);
        const char* const colour = ColourOf(line);
        out << (colour == nullptr ? "" : colour) << line << (colour == nullptr ? "\n" : "\x1b[0m\n");
    }
}

}  // namespace zupm::tool

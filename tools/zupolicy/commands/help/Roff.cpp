#include "tools/zupolicy/commands/help/Roff.h"

#include <algorithm>

namespace zupm::tool {
namespace {

constexpr std::size_t kWidth = 76;

/// The first part of a text that fits into a line, and its end at a blank.
std::size_t EndOfLine(std::string_view text)
{
    if (text.size() <= kWidth) {
        return text.size();
    }
    const std::size_t last = text.rfind(' ', kWidth);
    return std::min(last == std::string_view::npos ? text.find(' ') : last, text.size());
}

}  // namespace

std::string Roff(std::string_view text)
{
    std::string escaped;
    for (const char character : text) {
        switch (character) {
            case '\\':
                escaped += "\\e";
                break;
            case '-':
                escaped += "\\-";
                break;
            case '\'':
                escaped += "\\(aq";
                break;
            case '`':
                escaped += "\\(ga";
                break;
            case '^':
                escaped += "\\(ha";
                break;
            case '~':
                escaped += "\\(ti";
                break;
            case '"':
                escaped += "\\(dq";
                break;
            default:
                escaped += character;
        }
    }
    return escaped;
}

void RoffPage::Line(std::string_view line)
{
    if (line.starts_with('.') || line.starts_with('\'')) {
        m_source += "\\&";
    }
    m_source.append(line);
    m_source += '\n';
}

void RoffPage::Request(std::string_view request)
{
    m_source += '.';
    m_source.append(request);
    m_source += '\n';
}

void RoffPage::Heading(std::string_view kind, std::string_view title)
{
    Request(std::string(kind) + " \"" + Roff(title) + "\"");
}

void RoffPage::Text(std::string_view text)
{
    Escaped(Roff(text));
}

void RoffPage::Escaped(std::string_view text)
{
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        std::string_view line = text.substr(0, end);
        text.remove_prefix(std::min(end + 1, text.size()));
        while (!line.empty()) {
            const std::size_t length = EndOfLine(line);
            Line(line.substr(0, length));
            line.remove_prefix(length);
            line.remove_prefix(std::min(line.find_first_not_of(' '), line.size()));
        }
    }
}

void RoffPage::Item(std::string_view term, std::string_view text)
{
    Request("TP");
    Line(term);
    Text(text);
}

void RoffPage::Example(std::string_view lines)
{
    Request("EX");
    while (!lines.empty()) {
        const std::size_t end = std::min(lines.find('\n'), lines.size());
        std::string_view line = lines.substr(0, end);
        line.remove_prefix(std::min(line.find_first_not_of(' '), line.size()));
        Line(Roff(line));
        lines.remove_prefix(std::min(end + 1, lines.size()));
    }
    Request("EE");
}

}  // namespace zupm::tool

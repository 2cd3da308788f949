#include "fuzz/ini/IniReader.h"

namespace zupm::fuzz {

namespace {

constexpr std::u16string_view kBlanks = u" \t\v\f";

std::u16string_view WithoutBlanks(std::u16string_view text)
{
    const std::size_t first = text.find_first_not_of(kBlanks);
    if (first == std::u16string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

std::u16string_view WithoutQuotes(std::u16string_view text)
{
    const bool isQuoted =
        text.size() > 1 && text.front() == text.back() && (text.front() == u'"' || text.front() == u'\'');
    return isQuoted ? text.substr(1, text.size() - 2) : text;
}

IniLine ReadLine(std::u16string_view raw)
{
    IniLine line;
    line.raw = raw;
    const std::u16string_view text = WithoutBlanks(raw);
    if (text.empty()) {
        return line;
    }
    const std::size_t bracket = text.find(u']');
    const std::size_t equals = text.find(u'=');
    if (text.front() == u'[' && bracket != std::u16string_view::npos) {
        line.kind = IniLine::Kind::Section;
        line.name = WithoutBlanks(text.substr(1, bracket - 1));
    } else if (equals != std::u16string_view::npos) {
        line.kind = IniLine::Kind::Setting;
        line.name = WithoutBlanks(text.substr(0, equals));
        line.value = WithoutQuotes(WithoutBlanks(text.substr(equals + 1)));
    } else {
        line.kind = IniLine::Kind::Other;
    }
    return line;
}

}  // namespace

IniLines ReadIniLines(std::u16string_view text)
{
    IniLines lines;
    std::u16string current;
    bool isOpen = false;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const bool isLineEnd = text[at] == u'\r' || text[at] == u'\n';
        if (!isLineEnd) {
            current += text[at];
            isOpen = true;
            continue;
        }
        if (text[at] == u'\r' && at + 1 < text.size() && text[at + 1] == u'\n') {
            ++at;
        }
        lines.push_back(ReadLine(current));
        current.clear();
        isOpen = false;
    }
    if (isOpen) {
        lines.push_back(ReadLine(current));
    }
    return lines;
}

}  // namespace zupm::fuzz

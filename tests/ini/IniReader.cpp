#include "tests/ini/IniReader.h"

#include <algorithm>

namespace zupm::test {

namespace {

std::u16string Trimmed(std::u16string_view text)
{
    const auto isBlank = [](char16_t unit) {
        return std::u16string_view(u"\t\n\v\f\r\x1A ").find(unit) != std::u16string_view::npos;
    };
    while (!text.empty() && isBlank(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && isBlank(text.back())) {
        text.remove_suffix(1);
    }
    return std::u16string(text);
}

std::u16string Unquoted(std::u16string text)
{
    const bool isQuoted =
        text.size() > 1 && (text.front() == u'"' || text.front() == u'\'') && text.front() == text.back();
    return isQuoted ? text.substr(1, text.size() - 2) : text;
}

std::u16string UpToNull(const std::u16string& text)
{
    return text.substr(0, text.find(u'\0'));
}

}  // namespace

IniReader::IniReader(std::u16string_view text)
{
    while (!text.empty()) {
        const std::size_t end = std::min(text.find_first_of(u"\r\n"), text.size());
        ReadLine(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
}

void IniReader::ReadLine(std::u16string_view line)
{
    const std::u16string text = Trimmed(line);
    const std::size_t bracket = text.rfind(u']');
    if (text.starts_with(u'[') && bracket != text.npos) {
        m_current = UpToNull(Trimmed(std::u16string_view(text).substr(1, bracket - 1)));
        m_sections.try_emplace(m_current);
    } else if (const std::size_t equals = text.find(u'='); equals != text.npos) {
        const std::u16string_view view = text;
        m_sections[m_current].try_emplace(UpToNull(Trimmed(view.substr(0, equals))),
                                          Unquoted(UpToNull(Trimmed(view.substr(equals + 1)))));
    }
}

std::u16string IniReader::AsRead(std::u16string_view value)
{
    return Unquoted(Trimmed(value));
}

std::optional<std::u16string> IniReader::Value(const std::u16string& section, const std::u16string& key) const
{
    const auto keys = m_sections.find(section);
    if (keys == m_sections.end() || !keys->second.contains(key)) {
        return std::nullopt;
    }
    return keys->second.at(key);
}

std::vector<std::u16string> IniReader::Names() const
{
    std::vector<std::u16string> names;
    for (const auto& [section, keys] : m_sections) {
        for (const auto& [key, value] : keys) {
            names.push_back(section + u"/" + key);
        }
    }
    return names;
}

}  // namespace zupm::test

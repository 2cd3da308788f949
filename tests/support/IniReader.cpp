#include "tests/support/IniReader.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "text/Utf.h"

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

std::u16string DecodeIni(std::string_view bytes)
{
    std::u16string text;
    const bool isHighFirst = bytes.starts_with("\xFE\xFF");
    if (isHighFirst || bytes.starts_with("\xFF\xFE")) {
        for (std::size_t at = 2; at + 1 < bytes.size(); at += 2) {
            const auto low = static_cast<unsigned char>(bytes[isHighFirst ? at + 1 : at]);
            const auto high = static_cast<unsigned char>(bytes[isHighFirst ? at : at + 1]);
            text += static_cast<char16_t>(low | high << 8);
        }
        return text;
    }
    if (std::optional<std::u16string> utf8 = ToUtf16(bytes)) {
        return *utf8;
    }
    for (const char byte : bytes) {
        text += static_cast<char16_t>(static_cast<unsigned char>(byte));
    }
    return text;
}

std::vector<std::u16string> IniLines(std::u16string_view text)
{
    std::vector<std::u16string> lines;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find_first_of(u"\r\n"), text.size());
        if (std::u16string line = Trimmed(text.substr(0, end)); !line.empty()) {
            lines.push_back(std::move(line));
        }
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return lines;
}

IniReader::IniReader(std::u16string_view text)
{
    for (const std::u16string& line : IniLines(text)) {
        ReadLine(line);
    }
}

void IniReader::ReadLine(const std::u16string& line)
{
    const std::size_t bracket = line.rfind(u']');
    if (line.starts_with(u'[') && bracket != line.npos) {
        m_current = UpToNull(Trimmed(std::u16string_view(line).substr(1, bracket - 1)));
        m_sections.try_emplace(m_current);
    } else if (const std::size_t equals = line.find(u'='); equals != line.npos) {
        const std::u16string_view view = line;
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

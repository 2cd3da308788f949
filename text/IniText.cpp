#include "text/IniText.h"

#include <algorithm>
#include <vector>

#include "text/AsciiCase.h"

namespace zupm {

namespace {

constexpr std::u16string_view kLineEnd = u"\r\n";

constexpr bool IsBlank(char16_t unit)
{
    return (unit >= u'\t' && unit <= u'\r') || unit == u'\x1A' || unit == u' ';
}

std::u16string_view WithoutLeadingBlanks(std::u16string_view text)
{
    while (!text.empty() && IsBlank(text.front())) {
        text.remove_prefix(1);
    }
    return text;
}

std::u16string_view WithoutTrailingBlanks(std::u16string_view text)
{
    while (!text.empty() && IsBlank(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

std::u16string_view UpToNull(std::u16string_view text)
{
    return text.substr(0, text.find(u'\0'));
}

/// A section's header, or one line in a section.
struct Entry {
    bool isSection = false;
    std::u16string_view name;
    std::optional<std::u16string_view> value;  ///< nothing without '='
};

/// The header that a line is; nothing for any other line.
std::optional<Entry> ReadSection(std::u16string_view line)
{
    const std::size_t bracket = line.rfind(u']');
    if (!line.starts_with(u'[') || bracket == line.npos) {
        return std::nullopt;
    }
    return Entry{true, UpToNull(WithoutIniBlanks(line.substr(1, bracket - 1))), std::nullopt};
}

/// Appends a line that is no header. Of several lines in a row without a name only the first is kept.
void AppendKey(std::u16string_view line, std::vector<Entry>& entries)
{
    const std::size_t equals = line.find(u'=');
    const std::u16string_view name = WithoutTrailingBlanks(line.substr(0, equals));
    Entry entry{false, UpToNull(name), std::nullopt};
    if (equals != line.npos) {
        entry.value = UpToNull(WithoutLeadingBlanks(line.substr(equals + 1)));
    }
    if (!name.empty() || entries.back().isSection || !entries.back().name.empty()) {
        entries.push_back(entry);
    }
}

std::vector<Entry> Parse(std::u16string_view text)
{
    std::vector<Entry> entries{{true, {}, std::nullopt}};
    while (!text.empty()) {
        const std::size_t end = std::min(text.find_first_of(kLineEnd), text.size());
        const std::u16string_view line = WithoutIniBlanks(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
        if (line.empty()) {
            continue;
        }
        if (const std::optional<Entry> section = ReadSection(line)) {
            entries.push_back(*section);
        } else {
            AppendKey(line, entries);
        }
    }
    return entries;
}

std::u16string Format(const std::vector<Entry>& entries)
{
    std::u16string text;
    for (const Entry& entry : entries) {
        if (!entry.isSection) {
            text.append(entry.name);
            if (entry.value) {
                text.append(u"=").append(*entry.value);
            }
            text.append(kLineEnd);
        } else if (!entry.name.empty()) {
            text.append(u"[").append(entry.name).append(u"]").append(kLineEnd);
        }
    }
    return text;
}

using Entries = std::vector<Entry>;

/// The first section of the name.
Entries::iterator FindSection(Entries& entries, std::u16string_view name)
{
    const std::u16string_view wanted = WithoutIniBlanks(name);
    return std::ranges::find_if(entries, [wanted](const Entry& entry) {
        return entry.isSection && EqualsIgnoringAsciiCase(entry.name, wanted);
    });
}

/// The first key of the name in a section, or the section's end.
Entries::iterator FindKey(Entries& entries, Entries::iterator section, std::u16string_view name)
{
    const std::u16string_view wanted = WithoutIniBlanks(name);
    return std::find_if(std::next(section), entries.end(), [wanted](const Entry& entry) {
        return entry.isSection || EqualsIgnoringAsciiCase(entry.name, wanted);
    });
}

bool IsKey(const Entries& entries, Entries::const_iterator place)
{
    return place != entries.end() && !place->isSection;
}

bool IsQuoted(std::u16string_view text)
{
    return text.size() >= 2 && (text.front() == u'"' || text.front() == u'\'') && text.front() == text.back();
}

}  // namespace

std::u16string SetIniValue(std::u16string_view text, std::u16string_view section, std::u16string_view key,
                           std::u16string_view value)
{
    Entries entries = Parse(text);
    auto found = FindSection(entries, section);
    if (found == entries.end()) {
        found = entries.insert(found, {true, WithoutLeadingBlanks(section), std::nullopt});
    }
    auto place = FindKey(entries, found, key);
    const std::u16string_view written = WithoutLeadingBlanks(value);
    if (!IsKey(entries, place)) {
        place = entries.insert(place, {false, WithoutLeadingBlanks(key), std::nullopt});
    } else if (place->value == written) {
        return std::u16string(text);
    }
    place->value = written;
    return Format(entries);
}

std::optional<std::u16string> ReadIniValue(std::u16string_view text, std::u16string_view section,
                                           std::u16string_view key)
{
    Entries entries = Parse(text);
    const auto found = FindSection(entries, section);
    if (found == entries.end()) {
        return std::nullopt;
    }
    const auto place = FindKey(entries, found, key);
    if (!IsKey(entries, place) || !place->value) {
        return std::nullopt;
    }
    const std::u16string_view value = *place->value;
    return std::u16string(IsQuoted(value) ? value.substr(1, value.size() - 2) : value);
}

std::u16string_view WithoutIniBlanks(std::u16string_view text) noexcept
{
    return WithoutTrailingBlanks(WithoutLeadingBlanks(text));
}

}  // namespace zupm

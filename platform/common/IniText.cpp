#include "platform/common/IniText.h"

#include <algorithm>

#include "platform/common/CaseFold.h"
#include "platform/common/Utf.h"

namespace zupm {

namespace {

constexpr std::u16string_view kLineEnd = u"\r\n";

/// What readers of INI files trim.
constexpr bool IsIniBlank(char16_t unit)
{
    return unit == u' ' || unit == u'\t' || unit == u'\v' || unit == u'\f';
}

/// What some reader might trim: all control characters, and every space of the basic plane.
constexpr bool MayBeTrimmed(char16_t unit)
{
    return unit <= u' ' || (unit >= 0x7F && unit <= 0xA0) || unit == 0x1680 || (unit >= 0x2000 && unit <= 0x200B) ||
           unit == 0x2028 || unit == 0x2029 || unit == 0x202F || unit == 0x205F || unit == 0x3000 || unit == 0xFEFF;
}

bool LosesItsEnds(std::u16string_view text)
{
    return !text.empty() && (MayBeTrimmed(text.front()) || MayBeTrimmed(text.back()));
}

std::u16string_view Trim(std::u16string_view text)
{
    while (!text.empty() && IsIniBlank(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && IsIniBlank(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

bool IsQuoted(std::u16string_view text)
{
    return text.size() >= 2 && (text.front() == u'"' || text.front() == u'\'') && text.front() == text.back();
}

/// A value as it stands in the file, so that reading gives back what was written.
std::u16string QuoteWhereNeeded(std::u16string_view value)
{
    if (!IsQuoted(value) && !LosesItsEnds(value)) {
        return std::u16string(value);
    }
    return std::u16string(u"\"").append(value).append(u"\"");
}

/// One line of the text: places of its first unit, of its line end and of the next line.
struct Line {
    std::size_t begin = 0;
    std::size_t end = 0;
    std::size_t next = 0;
};

Line LineAt(std::u16string_view text, std::size_t begin)
{
    const std::size_t end = std::min(text.find_first_of(kLineEnd, begin), text.size());
    const std::size_t lineEndLength = text.substr(end).starts_with(kLineEnd) ? 2 : 1;
    return {begin, end, std::min(end + lineEndLength, text.size())};
}

/// The name in a line `[name]`, whatever follows the bracket; nothing for any other line.
std::optional<std::u16string_view> SectionNameOf(std::u16string_view line)
{
    line = Trim(line);
    const std::size_t bracket = line.find(u']');
    if (!line.starts_with(u'[') || bracket == line.npos) {
        return std::nullopt;
    }
    return Trim(line.substr(1, bracket - 1));
}

/// Where a value stands, or where it could be put.
struct Place {
    bool sectionFound = false;
    bool keyFound = false;
    std::size_t begin = 0;  ///< of the value; without one, behind the last line of the section that is not blank
    std::size_t end = 0;
};

/// Looks at one line inside the wanted section; true when it holds the key.
bool LookForKey(std::u16string_view text, const Line& line, std::u16string_view key, Place& place)
{
    const std::u16string_view content = text.substr(line.begin, line.end - line.begin);
    if (Trim(content).empty()) {
        return false;
    }
    place.begin = place.end = line.next;
    const std::size_t equals = content.find(u'=');
    if (equals == content.npos || !EqualsIgnoringCase(Trim(content.substr(0, equals)), key)) {
        return false;
    }
    // Blanks between '=' and the value are the writer's habit and stay.
    std::size_t value = equals + 1;
    while (value < content.size() && IsIniBlank(content[value])) {
        ++value;
    }
    place = {true, true, line.begin + value, line.end};
    return true;
}

Place Find(std::u16string_view text, std::u16string_view section, std::u16string_view key)
{
    Place place;
    for (std::size_t at = 0; at < text.size();) {
        const Line line = LineAt(text, at);
        at = line.next;
        if (const auto name = SectionNameOf(text.substr(line.begin, line.end - line.begin))) {
            if (place.sectionFound) {
                break;
            }
            if (EqualsIgnoringCase(*name, section)) {
                place = {true, false, line.next, line.next};
            }
        } else if (place.sectionFound && LookForKey(text, line, key, place)) {
            break;
        }
    }
    return place;
}

bool EndsLine(std::u16string_view text)
{
    return text.empty() || text.back() == u'\n' || text.back() == u'\r';
}

/// One thing that an INI file cannot hold.
struct Refusal {
    bool (*applies)(std::u16string_view section, std::u16string_view key, std::u16string_view value);
    std::u16string_view reason;
};

using Text = std::u16string_view;

bool HasForbidden(Text text)
{
    constexpr Text kForbidden(u"\0\r\n", 3);
    return text.find_first_of(kForbidden) != text.npos;
}

constexpr Refusal kRefusals[] = {
    {[](Text section, Text, Text) { return section.empty(); }, u"the section is empty"},
    {[](Text, Text key, Text) { return key.empty(); }, u"the key is empty"},
    {[](Text section, Text key, Text value) {
         return HasForbidden(section) || HasForbidden(key) || HasForbidden(value);
     },
     u"a line break or null character"},
    {[](Text section, Text, Text) { return section.find(u']') != section.npos; }, u"a bracket in the section"},
    {[](Text, Text key, Text) { return key.find(u'=') != key.npos; }, u"an equals sign in the key"},
    {[](Text, Text key, Text) { return key.front() == u';' || key.front() == u'['; },
     u"the key begins like another line"},
    {[](Text section, Text key, Text) { return LosesItsEnds(section) || LosesItsEnds(key); },
     u"a blank at an end of the section or key"},
    {[](Text section, Text key, Text value) {
         return FindInvalidUtf16(section) != kValid || FindInvalidUtf16(key) != kValid ||
                FindInvalidUtf16(value) != kValid;
     },
     u"an unpaired surrogate"},
};

}  // namespace

std::u16string_view WhyIniRefuses(std::u16string_view section, std::u16string_view key,
                                  std::u16string_view value) noexcept
{
    for (const Refusal& refusal : kRefusals) {
        if (refusal.applies(section, key, value)) {
            return refusal.reason;
        }
    }
    return {};
}

std::optional<std::u16string> SetIniValue(std::u16string_view text, std::u16string_view section,
                                          std::u16string_view key, std::u16string_view value)
{
    if (!WhyIniRefuses(section, key, value).empty()) {
        return std::nullopt;
    }
    const Place place = Find(text, section, key);
    const std::size_t begin = place.sectionFound ? place.begin : text.size();
    const std::size_t end = place.sectionFound ? place.end : text.size();
    const std::u16string written = QuoteWhereNeeded(value);

    std::u16string result;
    result.reserve(text.size() + section.size() + key.size() + written.size() + 16);
    result.append(text.substr(0, begin));
    if (place.keyFound) {
        return result.append(written).append(text.substr(end));
    }
    if (!EndsLine(result)) {
        result.append(kLineEnd);
    }
    if (!place.sectionFound) {
        result.append(u"[").append(section).append(u"]").append(kLineEnd);
    }
    result.append(key).append(u"=").append(written).append(kLineEnd);
    return result.append(text.substr(end));
}

std::optional<std::u16string> ReadIniValue(std::u16string_view text, std::u16string_view section,
                                           std::u16string_view key)
{
    const Place place = Find(text, section, key);
    if (!place.keyFound) {
        return std::nullopt;
    }
    std::u16string_view value = Trim(text.substr(place.begin, place.end - place.begin));
    if (IsQuoted(value)) {
        value = value.substr(1, value.size() - 2);
    }
    return std::u16string(value);
}

}  // namespace zupm

#include "tools/zupolicy/client/contents/IniNames.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <limits>
#include <string>
#include <system_error>

#include "tools/zupolicy/client/contents/IniName.h"

namespace zupm::tool {
namespace {

/// Where a task has a field, and what the component takes when the file does not have it.
struct Field {
    Piece Task::*value;
    std::string_view missing;
};

/// In the order of kIniFields.
constexpr Field kFields[] = {
    {&Task::displayName, "invalid"}, {&Task::platforms, "invalid"}, {&Task::priority, ""},
    {&Task::softwareId, "invalid"},  {&Task::taskId, "invalid"},    {&Task::creator, "invalid"},
    {&Task::type, "invalid"},        {&Task::version, ""},
};
static_assert(std::size(kFields) == std::size(kIniFields));

/// Whether IniName gives this form for an ASCII name.
bool IsIniNameOf(std::string_view folded, std::string_view name)
{
    const auto capital = [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; };
    return std::ranges::equal(folded, name, {}, {}, capital);
}

/// The export leaves out a setting with one of these in its section, name or value.
bool IsRefused(std::string_view text)
{
    constexpr std::string_view kBreaks("\r\n\0", 3);
    return text.find_first_of(kBreaks) != std::string_view::npos;
}

/// The number that the component reads from a priority, as it writes it.
std::string PriorityText(std::string_view text)
{
    text.remove_prefix(std::min(text.find_first_not_of(" \t\n\v\f\r"), text.size()));
    const bool isNegative = text.starts_with('-');
    if (isNegative || text.starts_with('+')) {
        text.remove_prefix(1);
    }
    text = text.substr(0, text.find_first_not_of("0123456789"));
    // The sign is part of the range: the smallest number is one further from 0 than the largest.
    const std::string digits = (isNegative ? "-" : "") + std::string(text);
    std::int32_t number = 0;
    if (std::from_chars(digits.data(), digits.data() + digits.size(), number).ec == std::errc::result_out_of_range) {
        number = isNegative ? std::numeric_limits<std::int32_t>::min() : std::numeric_limits<std::int32_t>::max();
    }
    return std::to_string(number);
}

Piece WithoutBlanks(const FileContents& contents, Piece piece)
{
    const std::string_view text = contents.Text(piece);
    const std::string_view kept = WithoutIniBlanks(text);
    const auto skipped = kept.empty() ? 0 : static_cast<std::uint32_t>(kept.data() - text.data());
    return {piece.offset + skipped, static_cast<std::uint32_t>(kept.size())};
}

}  // namespace

void IniNames::OpenTask()
{
    m_names.clear();
    m_index = {};
    m_priority = PriorityText(m_contents.Text(m_contents.tasks.back().priority));
}

void IniNames::OpenSection(std::uint32_t section)
{
    const Piece name = m_contents.sections[section].name;
    m_section = kNone;
    if (!IsRefused(m_contents.Text(name))) {
        const Piece text = WithoutBlanks(m_contents, name);
        const std::string folded = IniName(m_contents.Text(text));
        m_section = FindOrAdd(text, folded, kNone, kNone);
        m_hasFields = IsIniNameOf(folded, kIniFieldSection);
    }
}

std::optional<IniNames::First> IniNames::Add(std::uint32_t setting)
{
    const std::string_view name = m_contents.Text(m_contents.settings[setting].name);
    const std::string_view value = m_contents.Text(m_contents.settings[setting].value);
    if (m_section == kNone || IsRefused(name) || IsRefused(value)) {
        return std::nullopt;
    }
    const Piece text = WithoutBlanks(m_contents, m_contents.settings[setting].name);
    const std::string folded = IniName(m_contents.Text(text));
    if (m_hasFields) {
        if (const std::optional<First> field = FindField(folded)) {
            return FieldValue(field->number) == value ? std::nullopt : field;
        }
    }
    const std::uint32_t first = m_names[FindOrAdd(text, folded, m_section, setting)].setting;
    if (m_contents.Text(m_contents.settings[first].value) == value) {
        return std::nullopt;
    }
    return First{Warning::Kind::SameInIni, first};
}

std::uint32_t IniNames::FindOrAdd(Piece text, std::string_view folded, std::uint32_t section, std::uint32_t setting)
{
    const auto number = static_cast<std::uint32_t>(m_names.size());
    const std::uint32_t known = m_index.FindOrAdd(KeyOf(section, folded), number, [&](std::uint32_t other) {
        return m_names[other].section == section && IniName(m_contents.Text(m_names[other].text)) == folded;
    });
    if (known != kNone) {
        return known;
    }
    m_names.push_back({text, section, setting});
    return number;
}

std::optional<IniNames::First> IniNames::FindField(std::string_view folded)
{
    const auto* const name = std::ranges::find_if(kIniFields, [&](auto field) { return IsIniNameOf(folded, field); });
    if (name == std::end(kIniFields)) {
        return std::nullopt;
    }
    const auto number = static_cast<std::uint32_t>(name - std::begin(kIniFields));
    return First{Warning::Kind::SameAsField, number};
}

std::string_view IniNames::FieldValue(std::uint32_t number) const
{
    if (kFields[number].value == &Task::priority) {
        return m_priority;
    }
    const Piece piece = m_contents.tasks.back().*kFields[number].value;
    return IsMissing(piece) ? kFields[number].missing : m_contents.Text(piece);
}

}  // namespace zupm::tool

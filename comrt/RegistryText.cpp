#include "comrt/RegistryText.h"

#include <algorithm>

#include "text/AsciiCase.h"

namespace zupm::runtime {
namespace {

constexpr std::string_view kDigits = "0123456789ABCDEF";

/// What must be escaped everywhere. Only values need the quote escaped, but one rule is simpler.
constexpr bool NeedsEscape(char unit)
{
    const auto byte = static_cast<unsigned char>(unit);
    return byte < 0x20 || byte == 0x7F || unit == '%' || unit == '"';
}

void AppendEscaped(std::string& out, std::string_view text)
{
    for (const char unit : text) {
        if (NeedsEscape(unit)) {
            const auto byte = static_cast<unsigned char>(unit);
            out += '%';
            out += kDigits[byte >> 4];
            out += kDigits[byte & 0x0F];
        } else {
            out += unit;
        }
    }
}

/// The ASCII character that an escape's two digits mean; nothing for null and for what is not ASCII.
std::optional<char> Unescape(std::string_view digits)
{
    constexpr std::string_view kEitherCase = "0123456789ABCDEFabcdef";
    if (digits.size() < 2) {
        return std::nullopt;
    }
    unsigned value = 0;
    for (const char digit : digits.substr(0, 2)) {
        const std::size_t found = kEitherCase.find(digit);
        if (found == std::string_view::npos) {
            return std::nullopt;
        }
        value = value * 16 + static_cast<unsigned>(found < 16 ? found : found - 6);
    }
    return value == 0 || value > 0x7F ? std::nullopt : std::optional(static_cast<char>(value));
}

/// The text that an escaped one means; nothing when it holds what must be escaped.
std::optional<std::string> Decode(std::string_view text)
{
    std::string decoded;
    decoded.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '%') {
            const auto unit = Unescape(text.substr(i + 1));
            if (!unit) {
                return std::nullopt;
            }
            decoded += *unit;
            i += 2;
        } else if (NeedsEscape(text[i])) {
            return std::nullopt;
        } else {
            decoded += text[i];
        }
    }
    return decoded;
}

result::Code CheckKey(std::string_view key)
{
    if (key.size() > kLongestKey) {
        return result::NameTooLong;
    }
    const bool emptyName =
        key.empty() || key.front() == '\\' || key.back() == '\\' || key.find("\\\\") != std::string_view::npos;
    const bool embeddedNull = key.find('\0') != std::string_view::npos;
    return emptyName || embeddedNull ? result::InvalidName : result::Success;
}

}  // namespace

bool AsciiCaseLess::operator()(std::string_view left, std::string_view right) const noexcept
{
    return std::lexicographical_compare(left.begin(), left.end(), right.begin(), right.end(), [](char a, char b) {
        return static_cast<unsigned char>(FoldAscii(a)) < static_cast<unsigned char>(FoldAscii(b));
    });
}

std::optional<RegistryText> RegistryText::Parse(std::string_view text)
{
    RegistryText registry;
    Values* current = nullptr;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        // A file that was cut short has a last line without its end.
        if (end == std::string_view::npos || !registry.ParseLine(text.substr(0, end), current)) {
            return std::nullopt;
        }
        text.remove_prefix(end + 1);
    }
    return registry;
}

bool RegistryText::ParseLine(std::string_view line, Values*& current)
{
    if (line.empty()) {
        return true;
    }
    if (line.front() != '[') {
        return current != nullptr && ParseValue(line, *current);
    }
    if (line.size() < 2 || line.back() != ']') {
        return false;
    }
    const auto key = Decode(line.substr(1, line.size() - 2));
    if (!key || CheckKey(*key) != result::Success) {
        return false;
    }
    current = &KeyAt(*key);
    return true;
}

bool RegistryText::ParseValue(std::string_view line, Values& values)
{
    // Quotes inside names and values are escaped, so the first `"="` divides the line.
    const bool isDefault = line.starts_with("@=\"");
    const std::size_t divider = isDefault ? 0 : line.find("\"=\"", 1);
    if (line.size() < 4 || line.back() != '"' || divider == std::string_view::npos ||
        (!isDefault && (line.front() != '"' || divider < 2 || divider + 3 >= line.size()))) {
        return false;
    }
    const std::size_t start = divider + 3;
    const auto name = Decode(isDefault ? std::string_view() : line.substr(1, divider - 1));
    const auto value = Decode(line.substr(start, line.size() - 1 - start));
    return name && value && values.emplace(*name, *value).second;
}

std::string RegistryText::Serialise() const
{
    std::string text;
    for (const auto& [key, values] : m_keys) {
        text += '[';
        AppendEscaped(text, key);
        text += "]\n";
        for (const auto& [name, value] : values) {
            if (name.empty()) {
                text += '@';
            } else {
                text += '"';
                AppendEscaped(text, name);
                text += '"';
            }
            text += "=\"";
            AppendEscaped(text, value);
            text += "\"\n";
        }
    }
    return text;
}

result::Code RegistryText::CreateKey(std::string_view key)
{
    const result::Code checked = CheckKey(key);
    if (checked == result::Success) {
        static_cast<void>(KeyAt(key));
    }
    return checked;
}

result::Code RegistryText::SetValue(std::string_view key, std::string_view name, std::string_view value)
{
    const result::Code checked = CheckKey(key);
    if (checked != result::Success) {
        return checked;
    }
    if (name.find('\0') != std::string_view::npos || value.find('\0') != std::string_view::npos) {
        return result::InvalidName;
    }
    KeyAt(key).insert_or_assign(std::string(name), std::string(value));
    return result::Success;
}

const std::string* RegistryText::FindValue(std::string_view key, std::string_view name) const
{
    const auto values = m_keys.find(key);
    if (values == m_keys.end()) {
        return nullptr;
    }
    const auto value = values->second.find(name);
    return value == values->second.end() ? nullptr : &value->second;
}

void RegistryText::DeleteTree(std::string_view key)
{
    const auto found = m_keys.find(key);
    if (found != m_keys.end()) {
        m_keys.erase(found);
    }
    // The keys below share the prefix and so are adjacent, but not to the key itself: "A!" sorts between them.
    const std::string prefix = std::string(key) + '\\';
    auto first = m_keys.lower_bound(prefix);
    auto last = first;
    while (last != m_keys.end() && last->first.size() > prefix.size() &&
           EqualsIgnoringAsciiCase(std::string_view(last->first).substr(0, prefix.size()), std::string_view(prefix))) {
        ++last;
    }
    m_keys.erase(first, last);
}

RegistryText::Values& RegistryText::KeyAt(std::string_view key)
{
    for (std::size_t end = key.find('\\'); end != std::string_view::npos; end = key.find('\\', end + 1)) {
        m_keys.try_emplace(std::string(key.substr(0, end)));
    }
    return m_keys.try_emplace(std::string(key)).first->second;
}

}  // namespace zupm::runtime

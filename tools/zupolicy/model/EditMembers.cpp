#include "tools/zupolicy/model/EditMembers.h"

#include <algorithm>
#include <charconv>
#include <cstddef>

#include "tools/zupolicy/model/XmlText.h"

namespace zupm::model {
namespace {

std::string Quoted(std::string_view name)
{
    return "\"" + std::string(name) + "\"";
}

std::optional<std::int32_t> NumberIn(const JsonValue& value)
{
    if (value.type == JsonValue::Type::Integer) {
        const bool fits = value.integer >= INT32_MIN && value.integer <= INT32_MAX;
        return fits ? std::optional(static_cast<std::int32_t>(value.integer)) : std::nullopt;
    }
    std::int32_t number = 0;
    const char* const end = value.text.data() + value.text.size();
    const auto [rest, error] = std::from_chars(value.text.data(), end, number);
    const bool isNumber = value.type == JsonValue::Type::Text && error == std::errc() && rest == end;
    return isNumber ? std::optional(number) : std::nullopt;
}

}  // namespace

Members::Members(const JsonValue& object, std::string_view what) : m_object(object), m_what(what)
{
    if (object.type != JsonValue::Type::Object) {
        Refuse(m_what + " must be an object");
    }
}

const JsonValue* Members::Find(std::string_view name)
{
    m_known.emplace(name);
    const auto found = std::ranges::find_if(m_object.members, [&](const auto& member) { return member.name == name; });
    return found == m_object.members.end() ? nullptr : &found->value;
}

std::optional<std::string> Members::FindText(std::string_view name)
{
    const JsonValue* const value = Find(name);
    if (value == nullptr) {
        return std::nullopt;
    }
    if (value->type != JsonValue::Type::Text) {
        throw JsonComplaint{value->at, Quoted(name) + " must be a text"};
    }
    if (const std::optional<std::string> complaint = ComplaintOfXml(value->text)) {
        throw JsonComplaint{value->at, Quoted(name) + " " + *complaint};
    }
    return value->text;
}

std::string Members::Text(std::string_view name)
{
    std::optional<std::string> text = FindText(name);
    if (!text) {
        Refuse(m_what + " needs the member " + Quoted(name));
    }
    return *std::move(text);
}

std::optional<std::string> Members::FindNumber(std::string_view name)
{
    const JsonValue* const value = Find(name);
    if (value == nullptr) {
        return std::nullopt;
    }
    const std::optional<std::int32_t> number = NumberIn(*value);
    if (!number) {
        throw JsonComplaint{value->at, Quoted(name) + " must be a whole number of 32 bits"};
    }
    return std::to_string(*number);
}

void Members::RequireNoOther() const
{
    for (const JsonValue::Member& member : m_object.members) {
        if (!m_known.contains(member.name)) {
            throw JsonComplaint{member.at, m_what + " has no member " + Quoted(member.name)};
        }
    }
}

}  // namespace zupm::model

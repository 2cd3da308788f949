#include "tools/zupolicy/model/JsonText.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <iterator>
#include <nlohmann/json.hpp>
#include <system_error>
#include <unordered_set>

namespace zupm::model {
namespace {

using nlohmann::json;

/// An iterator over a text that reports how far the parser has read.
class Reading {
public:
    using iterator_category = std::input_iterator_tag;
    using value_type = char;
    using difference_type = std::ptrdiff_t;
    using pointer = const char*;
    using reference = const char&;

    Reading(const char* at, std::size_t& count) : m_at(at), m_count(&count) {}
    reference operator*() const { return *m_at; }
    Reading& operator++()
    {
        ++m_at;
        ++*m_count;
        return *this;
    }
    Reading operator++(int)
    {
        const Reading before = *this;
        ++*this;
        return before;
    }
    friend bool operator==(const Reading& left, const Reading& right) { return left.m_at == right.m_at; }
    friend bool operator!=(const Reading& left, const Reading& right) { return !(left == right); }

private:
    const char* m_at;
    std::size_t* m_count;
};

/// Builds the value from the parser's events.
class Builder final : public json::json_sax_t {
public:
    Builder(std::string_view text, const ReadingLimits& limits, const std::size_t& read)
        : m_text(text), m_ignored(limits.ignored), m_mostLevels(limits.mostLevels), m_read(read)
    {
    }

    [[nodiscard]] JsonValue Take() { return std::move(m_root); }

    bool null() override { return Put(JsonValue::Type::Null); }
    bool boolean(bool value) override
    {
        if (IsSkipped()) {
            return true;
        }
        JsonValue& put = Place();
        put.type = JsonValue::Type::Boolean;
        put.integer = value ? 1 : 0;
        return true;
    }
    bool number_integer(number_integer_t value) override
    {
        if (IsSkipped()) {
            return true;
        }
        JsonValue& put = Place();
        put.type = JsonValue::Type::Integer;
        put.integer = value;
        return true;
    }
    bool number_unsigned(number_unsigned_t value) override
    {
        constexpr auto kLargest = static_cast<number_unsigned_t>(INT64_MAX);
        return value > kLargest ? Put(JsonValue::Type::Number) : number_integer(static_cast<number_integer_t>(value));
    }
    /// 1.0 is an integer, as it is for a schema.
    bool number_float(number_float_t value, const string_t& /*text*/) override
    {
        constexpr number_float_t kExact = 9007199254740992.0;
        const bool isInteger = std::trunc(value) == value && value >= -kExact && value <= kExact;
        return isInteger ? number_integer(static_cast<number_integer_t>(value)) : Put(JsonValue::Type::Number);
    }
    bool string(string_t& value) override
    {
        if (IsSkipped()) {
            return true;
        }
        JsonValue& put = Place();
        put.type = JsonValue::Type::Text;
        put.text = std::move(value);
        return true;
    }
    bool binary(binary_t& /*value*/) override { return false; }
    bool start_object(std::size_t /*count*/) override { return Open(JsonValue::Type::Object); }
    bool key(string_t& name) override;
    bool end_object() override { return Close(); }
    bool start_array(std::size_t /*count*/) override { return Open(JsonValue::Type::Array); }
    bool end_array() override { return Close(); }
    bool parse_error(std::size_t position, const std::string& token, const json::exception& error) override;

private:
    /// A value that is open, and the names of its members.
    struct Level {
        JsonValue* value;
        std::unordered_set<std::string> names;
    };

    [[nodiscard]] std::size_t TokenStart();
    [[nodiscard]] JsonValue& Place();
    [[nodiscard]] bool Put(JsonValue::Type type)
    {
        if (IsSkipped()) {
            return true;
        }
        Place().type = type;
        return true;
    }
    [[nodiscard]] bool Open(JsonValue::Type type);
    [[nodiscard]] bool Close()
    {
        if (m_isSkipping) {
            m_isSkipping = --m_skippedLevels != 0;
        } else {
            m_levels.pop_back();
        }
        m_previous = m_read;
        return true;
    }

    /// Whether this value, which is neither an object nor an array, belongs to the ignored member.
    [[nodiscard]] bool IsSkipped()
    {
        if (!m_isSkipping) {
            return false;
        }
        m_isSkipping = m_skippedLevels != 0;
        m_previous = m_read;
        return true;
    }

    std::string_view m_text;
    std::string_view m_ignored;
    std::size_t m_mostLevels;
    const std::size_t& m_read;
    bool m_isSkipping = false;        ///< in the value of the ignored member
    std::size_t m_skippedLevels = 0;  ///< that are open in it
    std::size_t m_previous = 0;       ///< where the token before this one ends, at most one character more
    JsonValue m_root;
    std::vector<Level> m_levels;
};

/// Only white space and signs lie between two tokens that are values or names.
std::size_t Builder::TokenStart()
{
    const std::size_t start = m_text.find_first_not_of(" \t\r\n,:[{", m_previous);
    m_previous = m_read;
    return std::min(start, m_text.size());
}

JsonValue& Builder::Place()
{
    const std::size_t at = TokenStart();
    JsonValue* place = &m_root;
    if (!m_levels.empty()) {
        JsonValue& parent = *m_levels.back().value;
        // A parent gets no further item while one of its items is open, so references to open items stay valid.
        place = parent.type == JsonValue::Type::Array ? &parent.items.emplace_back() : &parent.members.back().value;
    }
    place->at = at;
    return *place;
}

bool Builder::Open(JsonValue::Type type)
{
    if (m_isSkipping) {
        ++m_skippedLevels;
        return true;
    }
    if (m_levels.size() == m_mostLevels) {
        throw JsonComplaint{m_read - 1, "the value is nested too deeply"};
    }
    JsonValue& value = Place();
    value.type = type;
    value.at = m_read - 1;
    m_levels.push_back({&value, {}});
    return true;
}

bool Builder::key(string_t& name)
{
    if (m_isSkipping) {
        m_previous = m_read;
        return true;
    }
    const std::size_t at = TokenStart();
    Level& level = m_levels.back();
    if (!level.names.insert(name).second) {
        throw JsonComplaint{at, "the member \"" + name + "\" occurs again"};
    }
    m_isSkipping = m_levels.size() == 1 && name == m_ignored;
    level.value->members.push_back({std::move(name), at, {}});
    return true;
}

bool Builder::parse_error(std::size_t position, const std::string& /*token*/, const json::exception& error)
{
    // The parser's own place counts lines of this text alone; only the reason is kept.
    const std::string_view message = error.what();
    const std::size_t reason = message.find("syntax error");
    throw JsonComplaint{position == 0 ? 0 : position - 1,
                        std::string(reason == message.npos ? message : message.substr(reason))};
}

/// The end of the string that begins at a quotation mark.
std::size_t EndOfString(std::string_view text, std::size_t at)
{
    for (++at; at < text.size() && text[at] != '"'; ++at) {
        at += std::size_t{text[at] == '\\'};
    }
    return at + 1;
}

/// Whether a number is too large, or too near to 0, for the parser.
bool IsOutOfRange(std::string_view number)
{
    double value = 0;
    const char* const end = number.data() + number.size();
    const auto [rest, error] = std::from_chars(number.data(), end, value);
    return error == std::errc::result_out_of_range && rest == end;
}

/// The text with a small number in the place of each that the parser would refuse as too large. No member is a number
/// of such a size, so each is refused or ignored by its type.
std::string WithSmallNumbers(std::string_view text)
{
    constexpr std::string_view kSmall = "0.5";
    std::string result(text);
    for (std::size_t at = 0; at < text.size();) {
        if (text[at] == '"') {
            at = EndOfString(text, at);
            continue;
        }
        const std::size_t end = std::min(text.find_first_not_of("+-.0123456789eE", at), text.size());
        if (end - at > kSmall.size() && IsOutOfRange(text.substr(at, end - at))) {
            result.replace(at, end - at, kSmall).insert(at + kSmall.size(), end - at - kSmall.size(), ' ');
        }
        at = std::max(end, at + 1);
    }
    return result;
}

}  // namespace

JsonValue ReadJson(std::string_view text, const ReadingLimits& limits)
{
    const std::string small = WithSmallNumbers(text);
    std::size_t read = 0;
    Builder builder(small, limits, read);
    // The end is never moved, so it needs no count of its own.
    json::sax_parse(Reading(small.data(), read), Reading(small.data() + small.size(), read), &builder);
    return builder.Take();
}

}  // namespace zupm::model

#include "tools/zupolicy/model/JsonText.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <nlohmann/json.hpp>
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
    Builder(std::string_view text, const std::size_t& read, std::size_t mostLevels)
        : m_text(text), m_read(read), m_mostLevels(mostLevels)
    {
    }

    [[nodiscard]] JsonValue Take() { return std::move(m_root); }

    bool null() override { return Put(JsonValue::Type::Null); }
    bool boolean(bool value) override
    {
        JsonValue& put = Place();
        put.type = JsonValue::Type::Boolean;
        put.integer = value ? 1 : 0;
        return true;
    }
    bool number_integer(number_integer_t value) override
    {
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
    bool number_float(number_float_t /*value*/, const string_t& /*text*/) override
    {
        return Put(JsonValue::Type::Number);
    }
    bool string(string_t& value) override
    {
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
        Place().type = type;
        return true;
    }
    [[nodiscard]] bool Open(JsonValue::Type type);
    [[nodiscard]] bool Close()
    {
        m_levels.pop_back();
        m_previous = m_read;
        return true;
    }

    std::string_view m_text;
    const std::size_t& m_read;
    std::size_t m_mostLevels;
    std::size_t m_previous = 0;  ///< where the token before this one ends, at most one character more
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
    const std::size_t at = TokenStart();
    Level& level = m_levels.back();
    if (!level.names.insert(name).second) {
        throw JsonComplaint{at, "the member \"" + name + "\" occurs again"};
    }
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

}  // namespace

JsonValue ReadJson(std::string_view text, std::size_t mostLevels)
{
    std::size_t read = 0;
    Builder builder(text, read, mostLevels);
    // The end is never moved, so it needs no count of its own.
    json::sax_parse(Reading(text.data(), read), Reading(text.data() + text.size(), read), &builder);
    return builder.Take();
}

}  // namespace zupm::model

/// JSON with the place of each value, so that a complaint can name line and column.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace zupm::model {

/// A value of a JSON text.
struct JsonValue {
    enum class Type { Null, Boolean, Integer, Number, Text, Array, Object };

    struct Member;

    Type type = Type::Null;
    std::size_t at = 0;        ///< the byte that it begins at
    std::string text;          ///< of a text
    std::int64_t integer = 0;  ///< of an integer of 64 bits (one that is larger has type Number), or 1 for true
    std::vector<JsonValue> items;
    std::vector<Member> members;
};

struct JsonValue::Member {
    std::string name;
    std::size_t at = 0;  ///< the byte that the name begins at
    JsonValue value;
};

/// What is wrong with a JSON text, and the byte where.
struct JsonComplaint {
    std::size_t at;
    std::string message;
};

/// What a reading of JSON takes.
struct ReadingLimits {
    /// A member of the outermost object that may have any value that is JSON; its value is reported as null.
    std::string_view ignored = {};
    std::size_t mostLevels = 16;  ///< more than any edit has
};

/// Reads a text that is one JSON value. Refused are also two members of one name, and more levels than `limits` has.
/// Throws JsonComplaint, std::bad_alloc.
[[nodiscard]] JsonValue ReadJson(std::string_view text, const ReadingLimits& limits = {});

}  // namespace zupm::model

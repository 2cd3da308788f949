/// The members of one edit as JSON, taken one by one.
#pragma once

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "tools/zupolicy/model/JsonText.h"
#include "tools/zupolicy/model/Named.h"

namespace zupm::model {

/// Takes the members of an object; whoever takes them says which there may be. Every call that refuses something throws
/// JsonComplaint with its place.
class Members {
public:
    /// Refuses a value that is no object. `what` names the object in complaints.
    Members(const JsonValue& object, std::string_view what);

    [[nodiscard]] std::size_t At() const noexcept { return m_object.at; }

    /// A member, or null. From now on the object may have it.
    [[nodiscard]] const JsonValue* Find(std::string_view name);
    /// A text that XML can hold.
    [[nodiscard]] std::optional<std::string> FindText(std::string_view name);
    [[nodiscard]] std::string Text(std::string_view name);
    /// A number of 32 bits, or a text that holds nothing but one; as a text.
    [[nodiscard]] std::optional<std::string> FindNumber(std::string_view name);
    /// Refuses every member that was not asked for.
    void RequireNoOther() const;

    [[noreturn]] void Refuse(const std::string& message) const { throw JsonComplaint{m_object.at, message}; }

private:
    const JsonValue& m_object;
    std::string m_what;
    std::set<std::string, std::less<>> m_known;
};

}  // namespace zupm::model

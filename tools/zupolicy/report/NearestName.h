/// Suggestions for mistyped names.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace zupm::tool {

/// Finds, among names that exist, the one that is most similar to a name that does not. It differs only in the case of
/// its letters, or by at most two characters, which are fewer than the name has.
class NearestName {
public:
    explicit NearestName(std::string_view wanted);

    void Offer(std::string_view name);
    /// The best of the names offered; nothing when none is near.
    [[nodiscard]] const std::optional<std::string>& Best() const noexcept { return m_best; }
    /// `did you mean "General"?`, or nothing.
    [[nodiscard]] std::string Suggestion() const;

private:
    std::u32string m_wanted;
    std::size_t m_distance;
    std::optional<std::string> m_best;
};

}  // namespace zupm::tool

/// Values that must not be shown.
#pragma once

#include <atomic>
#include <cstddef>
#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "tools/zupolicy/model/Entry.h"

namespace zupm::tool {

/// What is printed in place of such a value.
inline constexpr std::string_view kHidden = "***";

/// Which values are secrets. A pattern is one of names, or one of SECTION/NAME; `*` and `?` are wildcards, upper and
/// lower case differ. A task's field goes by the name that `show --json` gives it, and a setting that repeats a hidden
/// field is hidden as well, and the other way round.
///
/// Lifetime  A value. Copies share what they know about the use of each pattern.
/// Threads   Any number may ask at the same time.
class Redaction {
public:
    Redaction() = default;
    explicit Redaction(const std::vector<std::string>& patterns);

    [[nodiscard]] bool IsEmpty() const noexcept { return m_use == nullptr; }
    /// The patterns that have hidden no value so far; none as long as nobody has asked about a value.
    [[nodiscard]] std::vector<std::string> Unused() const;

    /// Whether the setting's value is hidden. It is one of a task when the entry has a task ID.
    [[nodiscard]] bool Hides(const model::EntryId& id, std::string_view section, std::string_view name) const
    {
        return HidesSetting(section, name, id.taskId.has_value());
    }
    [[nodiscard]] bool HidesSetting(std::string_view section, std::string_view name, bool isTask) const;
    /// The same for a field of a task; its name is one of kFieldNames.
    [[nodiscard]] bool HidesField(std::string_view name) const;

    /// The value of the setting or field, or kHidden.
    [[nodiscard]] std::string_view Shown(const model::EntryId& id, std::string_view section, std::string_view name,
                                         std::string_view value) const
    {
        return Hides(id, section, name) ? kHidden : value;
    }
    [[nodiscard]] std::string_view ShownField(std::string_view name, std::string_view value) const
    {
        return HidesField(name) ? kHidden : value;
    }

private:
    template <class Fits>
    [[nodiscard]] bool HasOneThat(const Fits& fits) const;
    [[nodiscard]] bool Names(std::string_view section, std::string_view name) const;

    struct Pattern {
        explicit Pattern(std::string pattern) : text(std::move(pattern)) {}

        std::string text;
        std::atomic<bool> hasHidden = false;
    };
    struct Use {
        std::deque<Pattern> patterns;
        std::atomic<bool> isAsked = false;
    };

    std::shared_ptr<Use> m_use;  ///< null without patterns
};

/// The bytes of a text from `begin` up to `end`.
struct TextPart {
    std::size_t begin;
    std::size_t end;
};

/// The hidden values in the text of a policy file (UTF-8), in its order: what is between the tags of a setting, and
/// between the quotes of a task's field. When the text is cut off, or something in it has no end, what follows is
/// hidden as a whole, because nobody can say what it is.
[[nodiscard]] std::vector<TextPart> HiddenParts(const Redaction& redaction, std::string_view document);

}  // namespace zupm::tool

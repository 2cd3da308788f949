/// Failures with what the component does not report: names, and similar names that exist.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "tools/zupolicy/client/CallError.h"
#include "tools/zupolicy/client/Target.h"
#include "tools/zupolicy/client/contents/FileContents.h"

namespace zupm::tool {

/// What a call was about. Without a section it is the policy or task itself.
struct Sought {
    std::string file;
    Target target;
    std::optional<std::string> section;
    std::optional<std::string> name;
};

/// The failure with the section and the setting that are missing, and the element that an entry needs and the file
/// does not have. Any other failure stays as it is.
[[nodiscard]] CallError Explained(const CallError& error, const Sought& sought);

/// `; did you mean "General"?` when the file has a name much like the missing one; nothing otherwise.
[[nodiscard]] std::string SuggestionFor(const CallError& error, const Sought& sought);

/// The same for a policy or task, among contents that were read already.
[[nodiscard]] std::string SuggestionFor(const FileContents& contents, const Target& target);

/// The first element on the way to a new entry that a file does not have; empty when it has all.
[[nodiscard]] std::string_view MissingElement(const Places& places, const Target& target);

/// Calls `call`; a CallError leaves it explained and with a suggestion.
template <typename Call>
decltype(auto) Explaining(const Sought& sought, Call call)
{
    try {
        return call();
    } catch (const CallError& error) {
        throw Explained(error, sought).With(SuggestionFor(error, sought));
    }
}

}  // namespace zupm::tool

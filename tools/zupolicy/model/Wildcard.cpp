#include "tools/zupolicy/model/Wildcard.h"

#include <zuPolicyManager/client/Utf.h>

#include <algorithm>
#include <cstddef>

namespace zupm::model {
namespace {

/// A byte that is no valid UTF-8 counts as a character.
std::size_t LengthAt(std::string_view text, std::size_t at)
{
    return std::max(client::Utf8CharacterAt(text, at).length, std::size_t{1});
}

}  // namespace

bool Matches(std::string_view pattern, std::string_view text)
{
    // After a mismatch the last star takes one character more; an earlier star need never take another.
    std::size_t at = 0;
    std::size_t star = pattern.npos;
    std::size_t takenTo = 0;
    for (std::size_t read = 0; read < text.size();) {
        if (at < pattern.size() && pattern[at] == '*') {
            star = ++at;
            takenTo = read;
        } else if (at < pattern.size() && pattern[at] == '?') {
            ++at;
            read += LengthAt(text, read);
        } else if (at < pattern.size() && pattern[at] == text[read]) {
            ++at;
            ++read;
        } else if (star != pattern.npos) {
            takenTo += LengthAt(text, takenTo);
            read = takenTo;
            at = star;
        } else {
            return false;
        }
    }
    return pattern.substr(at).find_first_not_of('*') == pattern.npos;
}

}  // namespace zupm::model

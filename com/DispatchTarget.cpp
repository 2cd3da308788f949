#include "com/DispatchTarget.h"

#include <algorithm>

#include "text/AsciiCase.h"

namespace zupm {

namespace {

/// Compares unit by unit: the wide character of the target may be another type than char16_t.
bool IsNamed(const Member& member, LPCOLESTR asked) noexcept
{
    const OLECHAR* unit = asked;
    for (const char16_t expected : member.name) {
        if (FoldAscii(static_cast<char16_t>(*unit)) != FoldAscii(expected)) {
            return false;
        }
        ++unit;
    }
    return *unit == 0;
}

template <class IsMeant>
const DispatchTarget& FirstWith(std::span<const DispatchTarget> targets, IsMeant isMeant) noexcept
{
    // Objects of one interface are the most frequent; nothing needs to be searched for them.
    const auto found =
        targets.size() == 1 ? targets.begin() : std::ranges::find_if(targets, [&](const DispatchTarget& target) {
            return std::ranges::any_of(target.description->members, isMeant);
        });
    return found == targets.end() ? targets.front() : *found;
}

}  // namespace

const DispatchTarget& FindTarget(std::span<const DispatchTarget> targets, LPCOLESTR name) noexcept
{
    return FirstWith(targets, [&](const Member& member) { return name != nullptr && IsNamed(member, name); });
}

const DispatchTarget& FindTarget(std::span<const DispatchTarget> targets, DISPID member) noexcept
{
    return FirstWith(targets, [&](const Member& row) { return row.id == member; });
}

}  // namespace zupm

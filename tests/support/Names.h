/// Lists of names as tests read them.
#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "tests/support/Outs.h"
#include "zuPolicyManager/zuPolicyManager.h"

namespace zupm::test {

using Names = std::vector<std::u16string>;

/// What a call that lists something gave: its code, and the names. Those of a call that left the slot alone are
/// "(untouched)".
struct Listed {
    HRESULT code;
    Names names;

    friend bool operator==(const Listed&, const Listed&) = default;
};
void PrintTo(const Listed& listed, std::ostream* out);

/// A list that was handed out.
[[nodiscard]] inline Listed AllOf(Names names)
{
    return {0, std::move(names)};
}
/// A call that failed and left the slot alone.
[[nodiscard]] inline Listed NoneFor(HRESULT code)
{
    return {code, {u"(untouched)"}};
}

/// The names by index; the enumerator must give the same.
[[nodiscard]] Names ReadNames(IPolicyNames& names);
/// The names that the enumerator still has, all at once.
[[nodiscard]] Names ReadRest(IEnumVARIANT& names);
/// The enumerator of a list.
[[nodiscard]] ComPtr<IEnumVARIANT> EnumeratorOf(IPolicyNames& names);

/// What a call that gave `code` left in the slot.
[[nodiscard]] Listed Taken(HRESULT code, OutObject<IPolicyNames>& slot);

/// Calls `list(IPolicyNames** slot)` and reads what it handed out.
template <class List>
[[nodiscard]] Listed ListOf(List list)
{
    OutObject<IPolicyNames> slot;
    const HRESULT code = list(slot.Slot());
    return Taken(code, slot);
}

}  // namespace zupm::test

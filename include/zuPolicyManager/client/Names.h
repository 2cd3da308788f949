/// Lists of names, as the component hands them out.
#pragma once

#include <zuPolicyManager/client/Text.h>
#include <zuPolicyManager/zuPolicyManager.h>

#include <cstddef>
#include <string>
#include <vector>

namespace zupm::client {

/// Every name of a list, in its order. `check` throws for a result that is negative.
template <class Check>
[[nodiscard]] std::vector<std::string> NamesOf(IPolicyNames& list, const Check& check)
{
    LONG count = 0;
    check(list.get_Count(&count));
    std::vector<std::string> names;
    names.reserve(static_cast<std::size_t>(count));
    for (LONG index = 0; index < count; ++index) {
        Bstr name;
        check(list.get_Item(index, name.Slot()));
        names.push_back(ToText(name));
    }
    return names;
}

}  // namespace zupm::client

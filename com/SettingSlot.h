/// How products and tasks hand a setting out.
#pragma once

#include <string>
#include <string_view>

#include "com/Strings.h"

namespace zupm {

/// Stores the value of a setting of `data` (a CPolicyData or CTaskData) as StoreString does. BadArgument for a null
/// slot; otherwise the data's code. The slot is untouched on failure. The caller holds the lock of the data's object.
template <class Data>
[[nodiscard]] result::Code StoreSetting(Data& data, std::u16string_view section, BSTR name, BSTR* slot)
{
    if (slot == nullptr) {
        return result::BadArgument;
    }
    std::u16string value;
    const result::Code code = data.GetSectionSetting(section, TextOf(name), value);
    if (code >= 0) {
        // Given: see docs/given-oddities.md, "a buffer never fails".
        // A lack of memory is not reported here: it leaves the slot null.
        static_cast<void>(StoreString(slot, value));
    }
    return code;
}

}  // namespace zupm

#include "com/Strings.h"

#include <utility>

namespace zupm {

result::Code StoreString(BSTR* slot, std::u16string_view text) noexcept
{
    if (slot == nullptr) {
        return result::BadArgument;
    }
    SysFreeString(std::exchange(*slot, AllocateString(text)));
    return *slot != nullptr ? result::Success : result::AllocationFailed;
}

result::Code OverwriteString(BSTR* slot, std::u16string_view text) noexcept
{
    if (slot == nullptr) {
        return result::BadArgument;
    }
    *slot = AllocateString(text);
    return *slot != nullptr ? result::Success : result::AllocationFailed;
}

void ClearString(BSTR* slot) noexcept
{
    if (slot != nullptr) {
        SysFreeString(std::exchange(*slot, nullptr));
    }
}

}  // namespace zupm

#include "com/Strings.h"

#include <cstddef>
#include <utility>

#include "text/Transcode.h"

namespace zupm {

result::Code StoreString(BSTR* slot, std::u16string_view text) noexcept
{
    if (slot == nullptr) {
        return result::BadArgument;
    }
    SysFreeString(std::exchange(*slot, AllocateString(text)));
    return *slot != nullptr ? result::Success : result::AllocationFailed;
}

result::Code ReplaceString(BSTR* slot, std::u16string_view text) noexcept
{
    if (slot == nullptr) {
        return result::BadArgument;
    }
    const BSTR copy = AllocateString(text);
    if (copy == nullptr) {
        return result::AllocationFailed;
    }
    SysFreeString(std::exchange(*slot, copy));
    return result::Success;
}

result::Code StoreUtf8(BSTR* slot, std::span<const std::string_view> pieces) noexcept
{
    if (slot == nullptr) {
        return result::BadArgument;
    }
    std::size_t length = 0;
    for (const std::string_view piece : pieces) {
        length += LengthInUtf16(piece);
    }
    const BSTR text = AllocateString(length);
    if (text != nullptr) {
        auto* out = reinterpret_cast<std::byte*>(text);
        for (const std::string_view piece : pieces) {
            out += sizeof(OLECHAR) * WriteUtf16(piece, out);
        }
    }
    SysFreeString(std::exchange(*slot, text));
    return text != nullptr ? result::Success : result::AllocationFailed;
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

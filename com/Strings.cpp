#include "com/Strings.h"

#include <cstdint>
#include <cstring>
#include <new>
#include <utility>

namespace zupm {

namespace {

// The length prefix counts bytes in 32 bits, the null unit at the end not included.
constexpr std::size_t kLongestString = (UINT32_MAX - sizeof(std::uint32_t) - sizeof(OLECHAR)) / sizeof(OLECHAR);

static_assert(sizeof(OLECHAR) == sizeof(char16_t), "a BSTR is UTF-16 on every target");

}  // namespace

std::u16string TextOf(BSTR text)
{
    std::u16string copy(SysStringLen(text), u'\0');
    if (!copy.empty()) {
        std::memcpy(copy.data(), text, copy.size() * sizeof(char16_t));
    }
    return copy;
}

BSTR AllocateString(std::u16string_view text) noexcept
{
    if (text.size() > kLongestString) {
        return nullptr;
    }
    BSTR copy = SysAllocStringLen(nullptr, static_cast<UINT>(text.size()));
    if (copy != nullptr && !text.empty()) {
        std::memcpy(copy, text.data(), text.size() * sizeof(char16_t));
    }
    return copy;
}

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

Bstr::Bstr(std::u16string_view text) : m_text(AllocateString(text))
{
    if (m_text == nullptr) {
        throw std::bad_alloc();
    }
}

Bstr& Bstr::operator=(Bstr&& other) noexcept
{
    if (this != &other) {
        Reset();
        m_text = other.Detach();
    }
    return *this;
}

BSTR* Bstr::Put() noexcept
{
    Reset();
    return &m_text;
}

BSTR Bstr::Detach() noexcept
{
    return std::exchange(m_text, nullptr);
}

void Bstr::Reset() noexcept
{
    SysFreeString(Detach());
}

}  // namespace zupm

// The string family. A block is [4 bytes unused][32-bit byte count][units][null unit], so the units keep 8-byte
// alignment and the count lies where every client of such strings expects it.
#include <cstring>
#include <new>
#include <string>

#include "zuPolicyManager/zucomrt.h"

namespace {

constexpr std::size_t kHeaderBytes = 8;
constexpr std::size_t kCountBytes = sizeof(std::uint32_t);
/// The whole block, header and null unit included, has a size that fits 32 bits.
constexpr std::size_t kMostUnits = (UINT32_MAX - kHeaderBytes - sizeof(OLECHAR)) / sizeof(OLECHAR);

BSTR NewString(const OLECHAR* text, std::size_t units) noexcept
{
    if (units > kMostUnits) {
        return nullptr;
    }
    const std::size_t bytes = units * sizeof(OLECHAR);
    auto* block = static_cast<std::byte*>(::operator new(kHeaderBytes + bytes + sizeof(OLECHAR), std::nothrow));
    if (block == nullptr) {
        return nullptr;
    }
    const auto count = static_cast<std::uint32_t>(bytes);
    std::memset(block, 0, kHeaderBytes);
    std::memcpy(block + kHeaderBytes - kCountBytes, &count, kCountBytes);
    std::byte* units8 = block + kHeaderBytes;
    if (text == nullptr) {
        std::memset(units8, 0, bytes);
    } else {
        std::memcpy(units8, text, bytes);
    }
    std::memset(units8 + bytes, 0, sizeof(OLECHAR));
    return reinterpret_cast<BSTR>(units8);
}

}  // namespace

BSTR SysAllocString(const OLECHAR* text) noexcept
{
    return text == nullptr ? nullptr : NewString(text, std::char_traits<OLECHAR>::length(text));
}

BSTR SysAllocStringLen(const OLECHAR* text, UINT length) noexcept
{
    return NewString(text, length);
}

void SysFreeString(BSTR text) noexcept
{
    if (text != nullptr) {
        ::operator delete(reinterpret_cast<std::byte*>(text) - kHeaderBytes, std::nothrow);
    }
}

UINT SysStringByteLen(BSTR text) noexcept
{
    if (text == nullptr) {
        return 0;
    }
    std::uint32_t count = 0;
    std::memcpy(&count, reinterpret_cast<const std::byte*>(text) - kCountBytes, kCountBytes);
    return count;
}

UINT SysStringLen(BSTR text) noexcept
{
    return SysStringByteLen(text) / static_cast<UINT>(sizeof(OLECHAR));
}

#include "com/native/VariantConversion.h"

#include <charconv>
#include <cstring>
#include <iterator>
#include <limits>
#include <optional>
#include <string_view>

namespace zupm {
namespace {

/// The size in bytes of a by-reference value of a type; 0 for a type that none of the members could take.
constexpr std::size_t SizeOfType(VARTYPE type)
{
    switch (type) {
        case VT_I1:
        case VT_UI1:
            return 1;
        case VT_I2:
        case VT_UI2:
        case VT_BOOL:
            return 2;
        case VT_I4:
        case VT_UI4:
        case VT_INT:
        case VT_UINT:
            return 4;
        case VT_I8:
        case VT_UI8:
            return 8;
        case VT_BSTR:
        case VT_UNKNOWN:
        case VT_DISPATCH:
            return sizeof(void*);
        default:
            return 0;
    }
}

/// A whole number of any of the integer types.
struct WholeNumber {
    std::int64_t value;
    bool isPastInt64 = false;  ///< the value is `value` taken as unsigned
};

std::optional<WholeNumber> ToWholeNumber(const VARIANT& value)
{
    switch (value.vt) {
        case VT_I1:
            return WholeNumber{value.cVal};
        case VT_UI1:
            return WholeNumber{value.bVal};
        case VT_I2:
            return WholeNumber{value.iVal};
        case VT_UI2:
            return WholeNumber{value.uiVal};
        case VT_BOOL:
            return WholeNumber{value.boolVal};
        case VT_I4:
        case VT_INT:
            return WholeNumber{value.lVal};
        case VT_UI4:
        case VT_UINT:
            return WholeNumber{value.ulVal};
        case VT_I8:
            return WholeNumber{value.llVal};
        case VT_UI8:
            return WholeNumber{static_cast<std::int64_t>(value.ullVal), value.ullVal > std::uint64_t{INT64_MAX}};
        default:
            return std::nullopt;
    }
}

HRESULT Narrow(const WholeNumber& number, LONG& narrow)
{
    using Limits = std::numeric_limits<std::int32_t>;
    if (number.isPastInt64 || number.value < Limits::min() || number.value > Limits::max()) {
        return DISP_E_OVERFLOW;
    }
    narrow = static_cast<std::int32_t>(number.value);
    return S_OK;
}

std::u16string_view WithoutBlanks(std::u16string_view text)
{
    constexpr std::u16string_view kBlanks = u" \t\r\n";
    const std::size_t first = text.find_first_not_of(kBlanks);
    if (first == std::u16string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

HRESULT ParseNumber(std::u16string_view text, LONG& number)
{
    text = WithoutBlanks(text);
    const bool negative = text.starts_with(u'-');
    if (negative || text.starts_with(u'+')) {
        text.remove_prefix(1);
    }
    if (text.empty() || text.find_first_not_of(u"0123456789") != std::u16string_view::npos) {
        return DISP_E_TYPEMISMATCH;
    }
    // Past the range of 32 bits the exact value no longer matters, so it stops growing there.
    constexpr std::int64_t kEnough = std::int64_t{1} << 40;
    std::int64_t value = 0;
    for (const char16_t digit : text) {
        value = value < kEnough ? value * 10 + (digit - u'0') : value;
    }
    return Narrow({negative ? -value : value}, number);
}

BSTR NewDecimal(const WholeNumber& number)
{
    char digits[24];
    const auto written = number.isPastInt64 ? std::to_chars(std::begin(digits), std::end(digits),
                                                            static_cast<std::uint64_t>(number.value))
                                            : std::to_chars(std::begin(digits), std::end(digits), number.value);
    OLECHAR wide[24];
    OLECHAR* end = wide;
    for (const char* digit = digits; digit != written.ptr; ++digit) {
        *end++ = static_cast<OLECHAR>(*digit);
    }
    return SysAllocStringLen(wide, static_cast<UINT>(end - wide));
}

}  // namespace

HRESULT ReadThroughReferences(const VARIANT& argument, VARIANT& value) noexcept
{
    value = argument;
    if (value.vt == (VT_BYREF | VT_VARIANT)) {
        if (value.pvarVal == nullptr) {
            return DISP_E_TYPEMISMATCH;
        }
        value = *argument.pvarVal;
    }
    if ((value.vt & VT_BYREF) == 0) {
        return S_OK;
    }
    const void* place = value.byref;
    const auto type = static_cast<VARTYPE>(value.vt & ~VT_BYREF);
    const std::size_t size = SizeOfType(type);
    if (place == nullptr || size == 0) {
        return DISP_E_TYPEMISMATCH;
    }
    value = VARIANT{};
    value.vt = type;
    std::memcpy(&value.llVal, place, size);
    return S_OK;
}

HRESULT ToNumber(const VARIANT& value, LONG& number) noexcept
{
    if (value.vt == VT_EMPTY) {
        number = 0;
        return S_OK;
    }
    if (value.vt == VT_BSTR) {
        const std::u16string_view text(value.bstrVal == nullptr ? u"" : value.bstrVal, SysStringLen(value.bstrVal));
        return ParseNumber(text, number);
    }
    const auto whole = ToWholeNumber(value);
    return whole ? Narrow(*whole, number) : DISP_E_TYPEMISMATCH;
}

HRESULT ToText(const VARIANT& value, BSTR& text, BSTR& made) noexcept
{
    made = nullptr;
    if (value.vt == VT_BSTR || value.vt == VT_EMPTY) {
        // A null string counts as an empty one.
        text = value.vt == VT_BSTR ? value.bstrVal : nullptr;
        return S_OK;
    }
    const auto whole = ToWholeNumber(value);
    if (!whole) {
        return DISP_E_TYPEMISMATCH;
    }
    made = NewDecimal(*whole);
    text = made;
    return made == nullptr ? E_OUTOFMEMORY : S_OK;
}

HRESULT ToObject(const VARIANT& value, IUnknown*& object) noexcept
{
    if (value.vt == VT_UNKNOWN) {
        object = value.punkVal;
        return S_OK;
    }
    if (value.vt == VT_DISPATCH) {
        object = value.pdispVal;
        return S_OK;
    }
    return DISP_E_TYPEMISMATCH;
}

}  // namespace zupm

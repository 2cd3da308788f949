#include "fuzz/calls/Variants.h"

#include <iterator>

#include "fuzz/calls/Files.h"
#include "fuzz/support/SampleTexts.h"
#include "tests/support/Bstr.h"

namespace zupm::fuzz {

namespace {

constexpr VARTYPE kTypes[] = {VT_EMPTY,   VT_NULL, VT_I2,  VT_I4,  VT_BSTR, VT_DISPATCH, VT_ERROR, VT_BOOL, VT_VARIANT,
                              VT_UNKNOWN, VT_I1,   VT_UI1, VT_UI2, VT_UI4,  VT_I8,       VT_UI8,   VT_INT,  VT_UINT};

VARIANT OfType(VARTYPE type)
{
    VARIANT value{};
    value.vt = type;
    return value;
}

}  // namespace

Variants::~Variants()
{
    for (Cell& cell : m_cells) {
        SysFreeString(cell.text);
        m_objects.Adopt(cell.object);
        static_cast<void>(VariantClear(&cell.variant));
    }
}

VARIANT Variants::Fitting(ParameterType type)
{
    switch (type) {
        case ParameterType::String:
            return m_input.UpTo(3) == 3 ? ByReference(VT_BSTR) : Text();
        case ParameterType::Number: {
            VARIANT value = OfType(m_input.Flag() ? VT_I4 : VT_BOOL);
            value.lVal = m_input.UpTo<LONG>(1);
            return value;
        }
        case ParameterType::Object:
            return Object(m_input.Flag() ? VT_UNKNOWN : VT_DISPATCH);
        case ParameterType::StringSlot:
            return ByReference(m_input.Flag() ? VT_BSTR : VT_VARIANT);
        case ParameterType::NumberSlot:
            return ByReference(m_input.Flag() ? VT_I4 : VT_VARIANT);
        default:
            return ByReference(m_input.Flag() ? VT_UNKNOWN : m_input.Flag() ? VT_DISPATCH : VT_VARIANT);
    }
}

VARIANT Variants::Any()
{
    // Numbers are texts to a call by name, and so would be paths.
    if (m_pathsOnly) {
        return m_input.Flag() ? ByReference(VT_BSTR) : Text();
    }
    const VARTYPE type = kTypes[m_input.UpTo(std::size(kTypes) - 1)];
    if (m_input.Flag()) {
        return ByReference(type);
    }
    if (type == VT_BSTR) {
        return Text();
    }
    if (type == VT_DISPATCH || type == VT_UNKNOWN) {
        return Object(type);
    }
    VARIANT value = OfType(type == VT_VARIANT ? VT_EMPTY : type);
    value.llVal = m_input.Flag() ? m_input.UpTo(3) : m_input.Number();
    return value;
}

VARIANT Variants::Text()
{
    VARIANT value = OfType(VT_BSTR);
    if (m_input.UpTo(15) != 15) {
        value.bstrVal = m_cells.emplace_back().text =
            test::NewString(m_pathsOnly ? MakePath(m_input) : m_input.Text(kTexts));
    }
    return value;
}

/// The interfaces of all objects that are handed out begin with IDispatch.
VARIANT Variants::Object(VARTYPE type)
{
    VARIANT value = OfType(type);
    value.punkVal = m_objects.PickArgument(m_input);
    return value;
}

VARIANT Variants::ByReference(VARTYPE type)
{
    VARIANT value = OfType(static_cast<VARTYPE>(type | VT_BYREF));
    if (m_input.UpTo(15) == 15) {
        return value;
    }
    Cell& cell = m_cells.emplace_back();
    cell.number = m_input.UpTo(3);
    value.byref = PlaceIn(cell, type);
    return value;
}

/// Text slots begin empty: one getter overwrites what its slot holds.
void* Variants::PlaceIn(Cell& cell, VARTYPE type)
{
    switch (type) {
        case VT_BSTR:
            return &cell.text;
        case VT_DISPATCH:
        case VT_UNKNOWN:
            return &cell.object;
        case VT_VARIANT:
            cell.variant.vt = VT_BSTR;
            cell.variant.bstrVal = test::NewString(u"P1");
            return &cell.variant;
        default:
            return &cell.number;
    }
}

}  // namespace zupm::fuzz

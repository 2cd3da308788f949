/// Variants as the types that members take.
#pragma once

#include "zuPolicyManager/ComBase.h"

namespace zupm {

/// The value of an argument: by-reference values are read, through one variant at most. `value` owns nothing.
/// DISP_E_TYPEMISMATCH for a deeper reference, a null one and one of a type that is not known.
[[nodiscard]] HRESULT ReadThroughReferences(const VARIANT& argument, VARIANT& value) noexcept;

/// Whole numbers and booleans (true is -1), decimal text with blanks around it, and no value (0). DISP_E_TYPEMISMATCH;
/// DISP_E_OVERFLOW for what 32 bits cannot hold.
[[nodiscard]] HRESULT ToNumber(const VARIANT& value, LONG& number) noexcept;

/// A string as it is, no value as a null string; whole numbers and booleans as decimal text, in a new string `made`
/// (otherwise null), which the caller frees. DISP_E_TYPEMISMATCH, E_OUTOFMEMORY.
[[nodiscard]] HRESULT ToText(const VARIANT& value, BSTR& text, BSTR& made) noexcept;

/// An interface pointer as it is, without a reference of its own. DISP_E_TYPEMISMATCH.
[[nodiscard]] HRESULT ToObject(const VARIANT& value, IUnknown*& object) noexcept;

}  // namespace zupm

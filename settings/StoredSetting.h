/// A setting of an entry that is still in its file.
#pragma once

#include <string>
#include <string_view>

#include "xml/Node.h"
#include "zuPolicyManager/Results.h"

namespace zupm {

/// The stored text of a setting of a product or task element: that of the setting that CXMLDataObject finds in a copy
/// of the element. Reads a copy of the element's text from its beginning to the setting, without an index.
/// SectionNotFound, SettingNotFound; `value` is untouched on failure. Throws std::bad_alloc.
[[nodiscard]] result::Code ReadStoredSetting(const AdvXMLParser::Element& entry, std::u16string_view section,
                                             std::u16string_view name, std::u16string& value);

}  // namespace zupm

#include "settings/StoredSetting.h"

#include "settings/Schema.h"
#include "xml/Document.h"

namespace zupm {

using AdvXMLParser::Element;
using AdvXMLParser::ElementChildren;
using AdvXMLParser::WholeElement;

result::Code ReadStoredSetting(const Element& entry, std::u16string_view section, std::u16string_view name,
                               std::u16string& value)
{
    const WholeElement whole(entry);
    result::Code code = result::SectionNotFound;
    std::u16string childName;
    for (const Element child : ElementChildren(whole.Get())) {
        if (!child.ReadAttribute(schema::kName, childName) || childName != section) {
            continue;
        }
        // The document may know a task's sections, but not what they hold.
        const WholeElement sectionWithSettings(child);
        const Element setting = FindChildByAttribute(sectionWithSettings.Get(), schema::kName, name);
        if (!setting.IsNull()) {
            value = setting.GetText();
            return result::Success;
        }
        code = result::SettingNotFound;
    }
    return code;
}

}  // namespace zupm

#include "task/TaskFields.h"

#include <initializer_list>

#include "settings/Elements.h"
#include "text/Decimal.h"

namespace zupm {

using AdvXMLParser::Attribute;
using AdvXMLParser::Element;

namespace {

void ReadText(const Element& element, std::u16string_view name, std::u16string& field)
{
    if (const Attribute attribute = element.GetAttribute(name); !attribute.IsNull()) {
        field = attribute.GetText();
    }
}

}  // namespace

void TaskFields::Read(const Element& group, const Element& task)
{
    ReadText(group, u"SoftwareID", softwareId);
    ReadText(group, u"CreatorID", creatorId);
    ReadText(group, u"TaskID", taskId);
    ReadText(group, u"DisplayName", displayName);
    ReadText(group, u"Platforms", platformsSupported);
    ReadText(group, u"TaskType", taskType);
    if (const Attribute attribute = group.GetAttribute(u"TaskPriority"); !attribute.IsNull()) {
        priority = ParseInt32(attribute.GetText());
    }
    ReadText(task, u"TaskVersion", version);
}

void TaskFields::RequireXml() const
{
    for (const std::u16string* text :
         {&taskId, &displayName, &softwareId, &platformsSupported, &creatorId, &taskType}) {
        RequireXmlText(*text);
    }
}

}  // namespace zupm

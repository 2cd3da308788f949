#include "task/TaskFields.h"

#include <initializer_list>

#include "settings/RequireXmlText.h"
#include "settings/Schema.h"
#include "text/Decimal.h"

namespace zupm {

using AdvXMLParser::Attribute;
using AdvXMLParser::Element;

namespace {

// Given: see docs/given-oddities.md, "a missing attribute resets nothing".
void ReadText(const Element& element, std::u16string_view name, std::u16string& field)
{
    if (const Attribute attribute = element.GetAttribute(name); !attribute.IsNull()) {
        field = attribute.GetText();
    }
}

}  // namespace

void TaskFields::Read(const Element& group, const Element& task)
{
    ReadText(group, schema::kSoftwareId, softwareId);
    ReadText(group, schema::kCreatorId, creatorId);
    ReadText(group, schema::kTaskId, taskId);
    ReadText(group, schema::kDisplayName, displayName);
    ReadText(group, schema::kPlatforms, platformsSupported);
    ReadText(group, schema::kTaskType, taskType);
    if (const Attribute attribute = group.GetAttribute(schema::kTaskPriority); !attribute.IsNull()) {
        priority = ParseInt32(attribute.GetText());
    }
    ReadText(task, schema::kTaskVersion, version);
}

void TaskFields::RequireXml() const
{
    for (const std::u16string* text :
         {&taskId, &displayName, &softwareId, &platformsSupported, &creatorId, &taskType}) {
        RequireXmlText(*text);
    }
}

}  // namespace zupm

#include "settings/Elements.h"

#include "xml/Characters.h"
#include "xml/Exceptions.h"

namespace zupm {

using AdvXMLParser::Element;
using AdvXMLParser::ElementChildren;

Element FindChildByAttribute(const Element& parent, std::u16string_view attribute, std::u16string_view text)
{
    for (const Element child : ElementChildren(parent)) {
        if (child.GetAttribute(attribute).TextIs(text)) {
            return child;
        }
    }
    return {};
}

bool DeleteFirstSection(const Element& container, std::u16string_view name)
{
    Element section = FindChildByAttribute(container, kNameAttribute, name);
    if (section.IsNull()) {
        return false;
    }
    section.Delete();
    return true;
}

void RequireXmlText(std::u16string_view text)
{
    if (!AdvXMLParser::IsXmlText(text)) {
        throw AdvXMLParser::InvalidCharacterException();
    }
}

}  // namespace zupm

#include "settings/RequireXmlText.h"

#include "xml/Characters.h"
#include "xml/Exceptions.h"

namespace zupm {

void RequireXmlText(std::u16string_view text)
{
    if (!AdvXMLParser::IsXmlText(text)) {
        throw AdvXMLParser::InvalidCharacterException();
    }
}

}  // namespace zupm

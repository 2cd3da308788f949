/// A check before an edit of several steps.
#pragma once

#include <string_view>

#include "xml/Characters.h"
#include "xml/Exceptions.h"

namespace zupm {

/// Throws AdvXMLParser::InvalidCharacterException when XML cannot hold the text. An operation of several steps calls it
/// before it changes anything.
inline void RequireXmlText(std::u16string_view text)
{
    if (!AdvXMLParser::IsXmlText(text)) {
        throw AdvXMLParser::InvalidCharacterException();
    }
}

}  // namespace zupm

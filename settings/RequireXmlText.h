/// A check before an edit of several steps.
#pragma once

#include <string_view>

namespace zupm {

/// Throws AdvXMLParser::InvalidCharacterException when XML cannot hold the text. An operation of several steps calls it
/// before it changes anything.
void RequireXmlText(std::u16string_view text);

}  // namespace zupm

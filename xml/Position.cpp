#include "xml/Position.h"

#include <algorithm>

namespace AdvXMLParser {

Position PositionOf(std::string_view utf8, std::size_t offset) noexcept
{
    Position position;
    const std::string_view read = utf8.substr(0, std::min(offset, utf8.size()));
    for (std::size_t at = 0; at < read.size(); ++at) {
        const char c = read[at];
        const bool isPairStart = c == '\r' && at + 1 < read.size() && read[at + 1] == '\n';
        if (isPairStart) {
            continue;
        }
        if (c == '\n' || c == '\r') {
            ++position.line;
            position.column = 1;
        } else if ((static_cast<unsigned char>(c) & 0xC0) != 0x80) {
            ++position.column;
        }
    }
    return position;
}

}  // namespace AdvXMLParser

#include "tools/zupolicy/client/contents/PlaceFinder.h"

namespace zupm::tool {

LineAndColumn PlaceFinder::PlaceOf(std::size_t offset)
{
    for (; m_at < offset && m_at < m_text.size(); ++m_at) {
        const char byte = m_text[m_at];
        const bool isHalfOfLineEnd = byte == '\r' && m_at + 1 < m_text.size() && m_text[m_at + 1] == '\n';
        if ((byte == '\n' || byte == '\r') && !isHalfOfLineEnd) {
            ++m_place.line;
            m_place.column = 1;
        } else if ((static_cast<unsigned char>(byte) & 0xC0u) != 0x80u) {
            ++m_place.column;
        }
    }
    return m_place;
}

}  // namespace zupm::tool

#include "tools/zupolicy/client/contents/PositionCounter.h"

namespace zupm::tool {

Position PositionCounter::At(std::size_t offset)
{
    for (; m_at < offset; ++m_at) {
        const char c = m_text[m_at];
        const bool isPairStart = c == '\r' && m_at + 1 < m_text.size() && m_text[m_at + 1] == '\n';
        if (c == '\n' || (c == '\r' && !isPairStart)) {
            ++m_position.line;
            m_position.column = 1;
        } else if ((static_cast<unsigned char>(c) & 0xC0u) != 0x80u) {
            ++m_position.column;
        }
    }
    return m_position;
}

}  // namespace zupm::tool

#include "tools/zupolicy/report/Streams.h"

#include <ostream>

#include "tools/zupolicy/report/Visible.h"

namespace zupm::tool {

void Messages::Line(std::string_view text)
{
    WriteVisible(m_stream, text, Backslash::Kept);
    m_stream << '\n';
}

}  // namespace zupm::tool

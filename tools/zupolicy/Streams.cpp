#include "Streams.h"

#include <ostream>

#include "text/Visible.h"

namespace zupm::tool {

void Messages::Line(std::string_view text)
{
    WriteVisible(m_stream, text, Backslash::Kept);
    m_stream << '\n';
}

}  // namespace zupm::tool

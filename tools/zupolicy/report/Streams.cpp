#include "tools/zupolicy/report/Streams.h"

#include <ostream>

#include "tools/zupolicy/report/Visible.h"

namespace zupm::tool {

void Messages::Line(std::string_view text)
{
    WriteVisible(m_stream, text, Backslash::Kept);
    m_stream << '\n';
}

void Messages::Complain(std::string_view text)
{
    m_stream << (m_console.hasColour ? "\x1B[31mzupolicy:\x1B[0m " : "zupolicy: ");
    Line(text);
}

}  // namespace zupm::tool

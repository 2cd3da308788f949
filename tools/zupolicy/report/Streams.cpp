#include "tools/zupolicy/report/Streams.h"

#include <ostream>
#include <string>

#include "tools/zupolicy/report/Visible.h"

namespace zupm::tool {

void Messages::Line(std::string_view text)
{
    ClearStatus();
    WriteVisible(m_stream, text, Backslash::Kept);
    m_stream << '\n';
}

void Messages::Complain(std::string_view text)
{
    ClearStatus();
    m_stream << (m_console.hasColour ? "\x1B[31mzupolicy:\x1B[0m " : "zupolicy: ");
    Line(text);
}

void Messages::Status(std::string_view text)
{
    ClearStatus();
    m_stream << text << std::flush;
    m_statusLength = text.size();
}

void Messages::ClearStatus()
{
    if (m_statusLength != 0) {
        m_stream << '\r' << std::string(m_statusLength, ' ') << '\r' << std::flush;
        m_statusLength = 0;
    }
}

}  // namespace zupm::tool

#include "tests/support/LogCapture.h"

#include <ostream>
#include <utility>

#include "common/CzuLogger.h"
#include "tests/support/Bstr.h"

namespace zupm::test {

void PrintTo(const LogLine& line, std::ostream* out)
{
    *out << "level " << line.level << ", subsystem " << line.subsystem << ": " << line.text;
}

LogCapture::LogCapture()
{
    CzuLogger::SetSink([this](const LogMessage& message) {
        const std::lock_guard lock(m_lock);
        m_lines.push_back({message.level, Utf8(message.text), message.subsystem});
    });
}

LogCapture::~LogCapture()
{
    CzuLogger::SetSink({});
}

std::vector<LogLine> LogCapture::Take()
{
    const std::lock_guard lock(m_lock);
    return std::exchange(m_lines, {});
}

}  // namespace zupm::test

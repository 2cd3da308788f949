#include "tools/zupolicy/report/Progress.h"

#include <chrono>
#include <string>
#include <system_error>

namespace zupm::tool {

using namespace std::chrono_literals;

Progress::Progress(Streams streams, std::size_t total, bool isShown) : m_streams(streams), m_total(total)
{
    if (!isShown) {
        return;
    }
    try {
        m_thread = std::thread([this] { Run(); });
    } catch (const std::system_error&) {
        // The work itself needs no progress.
    }
}

Progress::~Progress()
{
    {
        const std::lock_guard lock(m_mutex);
        m_isOver = true;
    }
    m_end.notify_all();
    if (m_thread.joinable()) {
        m_thread.join();
    }
    m_streams.messages.ClearStatus();
}

void Progress::Run()
{
    std::unique_lock lock(m_mutex);
    auto pause = 1000ms;
    while (!m_end.wait_for(lock, pause, [this] { return m_isOver; })) {
        m_streams.messages.Status(std::to_string(m_done) + " of " + std::to_string(m_total) +
                                  (m_total == 1 ? " file" : " files"));
        pause = 100ms;
    }
}

}  // namespace zupm::tool

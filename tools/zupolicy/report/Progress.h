/// How far a long run is, for the person who waits.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <thread>

#include "tools/zupolicy/report/Streams.h"

namespace zupm::tool {

/// One line at the end of the messages, "3 of 40 files", that appears after a second, is rewritten, and is gone in the
/// end.
///
/// Lifetime  One run. The streams outlive it.
/// Threads   Any thread may call it.
class Progress {
public:
    /// `isShown` is false when nobody would see it.
    Progress(Streams streams, std::size_t total, bool isShown);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    /// Calls `print`, which reports one file, while the line is away.
    template <class Print>
    void Step(const Print& print)
    {
        const std::lock_guard lock(m_mutex);
        m_streams.messages.ClearStatus();
        print();
        ++m_done;
    }

private:
    void Run();

    Streams m_streams;
    std::size_t m_total;
    std::mutex m_mutex;
    std::condition_variable m_end;
    std::size_t m_done = 0;
    bool m_isOver = false;
    std::thread m_thread;
};

}  // namespace zupm::tool

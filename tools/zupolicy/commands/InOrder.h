/// Work on many files at once, reported in the order of the command line.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <exception>
#include <map>
#include <mutex>
#include <optional>
#include <thread>
#include <type_traits>
#include <utility>
#include <vector>

namespace zupm::tool {

/// Calls `make(0)` to `make(count - 1)` on as many threads as `jobs` says, and `report(number, result)` for each in
/// this order, one at a time. No more than twice as many results as jobs exist at a time, whatever `count` is.
///
/// Threads   Each thread calls a copy of `make` of its own, which ends with the thread. Any of the threads calls
///           `report`.
/// Errors    What `make` or `report` throws ends the work, and is thrown again once every thread has ended.
template <class Make, class Report>
class InOrder {
public:
    InOrder(std::size_t count, std::size_t jobs, Make make, Report report)
        : m_count(count), m_jobs(jobs), m_make(std::move(make)), m_report(std::move(report))
    {
    }

    void Run()
    {
        {
            std::vector<std::jthread> threads;
            for (std::size_t job = 0; job < m_jobs && job < m_count; ++job) {
                threads.emplace_back([this] { Work(); });
            }
        }
        if (m_failure) {
            std::rethrow_exception(m_failure);
        }
    }

private:
    using Result = std::invoke_result_t<Make&, std::size_t>;

    void Work() noexcept
    {
        try {
            Make make = m_make;
            while (const std::optional<std::size_t> number = Next()) {
                Keep(*number, make(*number));
            }
        } catch (...) {
            const std::lock_guard lock(m_mutex);
            m_failure = std::current_exception();
        }
        m_reported.notify_all();
    }

    /// The next number to work on; nothing when there is none any more.
    std::optional<std::size_t> Next()
    {
        std::unique_lock lock(m_mutex);
        m_reported.wait(lock, [this] { return IsOver() || m_next < m_done + 2 * m_jobs; });
        return IsOver() ? std::nullopt : std::optional(m_next++);
    }

    [[nodiscard]] bool IsOver() const { return m_failure || m_next == m_count; }

    /// Keeps a result until those before it are reported.
    void Keep(std::size_t number, Result result)
    {
        const std::lock_guard lock(m_mutex);
        m_results.emplace(number, std::move(result));
        for (auto first = m_results.begin(); first != m_results.end() && first->first == m_done;
             first = m_results.begin()) {
            if (!m_failure) {
                m_report(first->first, std::move(first->second));
            }
            m_results.erase(first);
            ++m_done;
        }
        m_reported.notify_all();
    }

    std::size_t m_count;
    std::size_t m_jobs;
    Make m_make;
    Report m_report;
    std::mutex m_mutex;
    std::condition_variable m_reported;
    std::map<std::size_t, Result> m_results;
    std::size_t m_next = 0;
    std::size_t m_done = 0;
    std::exception_ptr m_failure;
};

}  // namespace zupm::tool

/// Threads that start together.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <functional>
#include <initializer_list>
#include <mutex>
#include <thread>
#include <vector>

#include "tests/support/PolicyFileClient.h"

namespace zupm::test {

/// What one thread does in its n-th round.
using Round = std::function<void(int round)>;

/// Where threads wait until the last of them has come. std::barrier would do, but libstdc++ 12 builds it for Windows on
/// a wait that can miss its wake-up (it looks at the value before it takes the lock): under Wine, eight threads hung
/// within 3,000 starts.
class StartLine {
public:
    explicit StartLine(std::size_t threads) : m_missing(threads) {}

    void ArriveAndWait()
    {
        std::unique_lock lock(m_lock);
        if (--m_missing == 0) {
            m_complete.notify_all();
        }
        m_complete.wait(lock, [this] { return m_missing == 0; });
    }

private:
    std::mutex m_lock;
    std::condition_variable m_complete;
    std::size_t m_missing;
};

/// Runs each of `work` on a thread of its own, `rounds` times, all beginning at the same moment; waits for them.
inline void RunTogether(const std::vector<Round>& work, int rounds)
{
    StartLine start(work.size());
    std::vector<std::jthread> threads;
    threads.reserve(work.size());
    for (const Round& round : work) {
        threads.emplace_back([&start, &round, rounds] {
            start.ArriveAndWait();
            for (int i = 0; i < rounds; ++i) {
                round(i);
            }
        });
    }
}

/// Whether a code is one of those.
inline bool IsOneOf(HRESULT code, std::initializer_list<HRESULT> allowed)
{
    for (const HRESULT one : allowed) {
        if (code == one) {
            return true;
        }
    }
    return false;
}

/// Whether a result is a text that begins like that, or one of those failures.
inline bool IsTextOr(const TextResult& result, std::u16string_view begin, std::initializer_list<HRESULT> failures)
{
    return result.code == 0 ? result.text.value_or(u"").starts_with(begin) : IsOneOf(result.code, failures);
}

}  // namespace zupm::test

/// Threads that start together.
#pragma once

#include <barrier>
#include <cstddef>
#include <functional>
#include <initializer_list>
#include <thread>
#include <vector>

#include "tests/support/PolicyFileClient.h"

namespace zupm::test {

/// What one thread does in its n-th round.
using Round = std::function<void(int round)>;

/// Runs each of `work` on a thread of its own, `rounds` times, all beginning at the same moment; waits for them.
inline void RunTogether(const std::vector<Round>& work, int rounds)
{
    std::barrier start(static_cast<std::ptrdiff_t>(work.size()));
    std::vector<std::jthread> threads;
    threads.reserve(work.size());
    for (const Round& round : work) {
        threads.emplace_back([&start, &round, rounds] {
            start.arrive_and_wait();
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

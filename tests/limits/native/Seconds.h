/// Times as the system counts them.
#pragma once

#include <sys/time.h>

namespace zupm::test {

[[nodiscard]] inline double Seconds(const timeval& time)
{
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

}  // namespace zupm::test

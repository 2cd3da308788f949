// The program around tests that have the component in themselves.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>

#include "tests/support/ComponentHost.h"

int main(int argc, char** argv)
{
    testing::InitGoogleMock(&argc, argv);
    const zupm::test::ComponentHost host;
    if (host.Started() != S_OK) {
        std::fprintf(stderr, "the component could not be started: 0x%08X\n", static_cast<unsigned>(host.Started()));
        return 2;
    }
    return RUN_ALL_TESTS();
}

// One of several processes that load and save one file:  file_sharer <file> <seconds> <first version>
//
// Prints how many loads, saves and refused saves there were. The exit code is 0 when every load saw a whole version and
// a save failed for no other reason than that somebody had the file open.
#include <chrono>
#include <cstdlib>
#include <exception>
#include <iostream>

#include "PolicyVersions.h"
#include "tests/support/ClassAnnouncement.h"
#include "tests/support/FixedClock.h"

namespace zupm::test {

namespace {

struct Counts {
    int loads = 0;
    int saves = 0;
    int refused = 0;
};

/// Windows refuses to replace a file that another process has open; the save gives up after a second of trying.
bool IsHeldByAnother(HRESULT code)
{
    return code == result::SharingViolation || code == result::AccessDenied;
}

bool Share(const std::u16string& path, std::chrono::seconds time, std::uint32_t version, Counts& counts)
{
    const auto end = std::chrono::steady_clock::now() + time;
    PolicyFileClient file;
    do {
        if (const HRESULT code = file.Load(path); code != 0) {
            std::cerr << "load " << counts.loads << " gave " << code << "\n";
            return false;
        }
        if (!PolicyVersions::VersionOf(file)) {
            std::cerr << "load " << counts.loads << " saw parts of several versions\n";
            return false;
        }
        ++counts.loads;
        PolicyVersions::Edit(file, ++version);
        const HRESULT code = file.Write(path);
        if (code != 0 && !IsHeldByAnother(code)) {
            std::cerr << "save " << counts.saves << " gave " << code << "\n";
            return false;
        }
        ++(code == 0 ? counts.saves : counts.refused);
    } while (std::chrono::steady_clock::now() < end);
    return true;
}

int Run(char** arguments)
{
    if (FAILED(CoInitializeEx(nullptr, COINIT_MULTITHREADED)) || FAILED(AnnounceTestClasses())) {
        return 3;
    }
    const FixedClock clock;
    Counts counts;
    const bool isWhole = Share(Utf16(arguments[1]), std::chrono::seconds(std::atoi(arguments[2])),
                               static_cast<std::uint32_t>(std::atoi(arguments[3])), counts);
    std::cout << counts.loads << " " << counts.saves << " " << counts.refused << "\n";
    return isWhole ? 0 : 1;
}

}  // namespace

}  // namespace zupm::test

int main(int count, char** arguments)
{
    try {
        return count == 4 ? zupm::test::Run(arguments) : 2;
    } catch (const std::exception& failure) {
        std::cerr << failure.what() << "\n";
        return 4;
    }
}

// The program that is killed:  kill_victim <name of the shared memory> <way of writing> <file>
#include <windows.h>

#include <cstdio>
#include <exception>
#include <filesystem>

#include "tests/reliability/PolicyVersions.h"
#include "tests/reliability/Victim.h"
#include "tests/support/ClassAnnouncement.h"
#include "tests/support/FixedClock.h"

int wmain(int count, wchar_t** arguments)
{
    using namespace zupm::test;
    if (count != 4) {
        return 2;
    }
    const HANDLE mapping = OpenFileMappingW(FILE_MAP_WRITE, FALSE, arguments[1]);
    void* shared = MapViewOfFile(mapping, FILE_MAP_WRITE, 0, 0, sizeof(KillProgress));
    if (shared == nullptr || FAILED(CoInitializeEx(nullptr, COINIT_MULTITHREADED)) || FAILED(AnnounceTestClasses())) {
        return 3;
    }
    const FixedClock clock;
    try {
        const auto way = static_cast<WayOfWriting>(std::wcstol(arguments[2], nullptr, 10));
        const std::u16string path = std::filesystem::path(arguments[3]).u16string();
        KillProgress& progress = *static_cast<KillProgress*>(shared);
        PolicyFileClient file;
        if (!PolicyVersions::Load(file, path, progress.completed)) {
            return 4;
        }
        PolicyVersions::Edit(file, progress.completed + 1);
        WriteForEver(file, path, way, progress);
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "victim: %s\n", failure.what());
    }
    return 1;
}

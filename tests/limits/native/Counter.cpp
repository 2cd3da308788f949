// Runs attacks, each in a process of its own, for a tool that counts the instructions of every process:
//   limits_counter [LABEL FILE]...
// A line for each is "process code". The first line is of a process that does nothing: what all have in common.
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>

#include "tests/limits/Attack.h"
#include "tests/support/ComponentHost.h"
#include "tests/support/TempFolder.h"

using namespace zupm::test;

namespace {

/// Ends without what programs do at their end: none of it belongs to an attack.
[[noreturn]] void RunAndEnd(const Attack* attack, const char* file)
{
    const HRESULT code = attack == nullptr ? 0 : attack->run(std::filesystem::path(file).u16string());
    std::printf("%d %d\n", static_cast<int>(getpid()), static_cast<int>(code));
    std::fflush(stdout);
    _exit(EXIT_SUCCESS);
}

bool RunInAProcess(const Attack* attack, const char* file)
{
    const pid_t child = fork();
    if (child == 0) {
        RunAndEnd(attack, file);
    }
    int status = 0;
    return child > 0 && waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

/// The tool translates code when it runs first. What runs here is translated once and not again in every process.
void Prepare()
{
    constexpr std::size_t kSmall = 4096;
    const TempFolder folder;
    for (const Attack& attack : EditAttacks()) {
        static_cast<void>(attack.run(folder.Write(u"small.xml", attack.file(kSmall))));
    }
}

}  // namespace

int main(int argc, char** argv)
{
    const ComponentHost host;
    if (FAILED(host.Started())) {
        return EXIT_FAILURE;
    }
    Prepare();
    if (!RunInAProcess(nullptr, nullptr)) {
        return EXIT_FAILURE;
    }
    for (int place = 1; place + 1 < argc; place += 2) {
        const Attack* const attack = FindAttack(argv[place]);
        if (attack == nullptr || !RunInAProcess(attack, argv[place + 1])) {
            std::fprintf(stderr, "%s did not come to its end\n", argv[place]);
            return EXIT_FAILURE;
        }
    }
    return EXIT_SUCCESS;
}

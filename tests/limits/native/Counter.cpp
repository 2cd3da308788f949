// Runs attacks, each in a process of its own, for a tool that counts the instructions of every process:
//   limits_counter [LABEL FILE]...
// The line of each is "process code", or "0 0" for one that did not end. The first line is for a process that does
// nothing: its instructions are common to all.
#include <sys/resource.h>
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

/// The tool makes an attack some twenty times slower; most take less than a second of processor time with it.
constexpr rlim_t kMostSeconds = 30;

/// Skips what programs do at their end: none of it belongs to an attack.
[[noreturn]] void RunAndEnd(const Attack* attack, const char* file)
{
    const rlimit limit{kMostSeconds, kMostSeconds};
    setrlimit(RLIMIT_CPU, &limit);
    const HRESULT code = attack == nullptr ? 0 : attack->run(std::filesystem::path(file).u16string());
    std::printf("%d %d\n", static_cast<int>(getpid()), static_cast<int>(code));
    std::fflush(stdout);
    _exit(EXIT_SUCCESS);
}

void RunInAProcess(const Attack* attack, const char* file)
{
    const pid_t child = fork();
    if (child == 0) {
        RunAndEnd(attack, file);
    }
    int status = 0;
    if (child < 0 || waitpid(child, &status, 0) != child || status != 0) {
        std::puts("0 0");
        std::fflush(stdout);
    }
}

/// The tool translates code when it first runs. Code that runs here is not translated again in every process.
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
    RunInAProcess(nullptr, nullptr);
    for (int place = 1; place + 1 < argc; place += 2) {
        const Attack* const attack = FindAttack(argv[place]);
        if (attack == nullptr) {
            return EXIT_FAILURE;
        }
        RunInAProcess(attack, argv[place + 1]);
    }
    return EXIT_SUCCESS;
}

#include "tests/reliability/VictimProcess.h"

#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <exception>
#include <new>
#include <stdexcept>
#include <utility>

namespace zupm::test {

/// A victim is a fork of the test: everything is loaded already, so a victim costs little time.
struct VictimProcess::System {
    KillProgress* progress = nullptr;
    pid_t child = 0;
};

VictimProcess::VictimProcess() : m_system(new System)
{
    void* shared = ::mmap(nullptr, sizeof(KillProgress), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (shared == MAP_FAILED) {
        throw std::runtime_error("no shared memory");
    }
    m_system->progress = new (shared) KillProgress{};
}

VictimProcess::~VictimProcess()
{
    if (m_system->child != 0) {
        Kill();
    }
    ::munmap(m_system->progress, sizeof(KillProgress));
}

KillProgress& VictimProcess::Progress()
{
    return *m_system->progress;
}

void VictimProcess::Start(PolicyFileClient& ready, const std::u16string& path, WayOfWriting way)
{
    const pid_t child = ::fork();
    if (child < 0) {
        throw std::runtime_error("fork failed");
    }
    if (child == 0) {
        try {
            WriteForEver(ready, path, way, Progress());
        } catch (const std::exception& failure) {
            std::fprintf(stderr, "victim: %s\n", failure.what());
        }
        ::_exit(1);
    }
    m_system->child = child;
}

void VictimProcess::Kill()
{
    const pid_t child = std::exchange(m_system->child, 0);
    int status = 0;
    if (::kill(child, SIGKILL) != 0 || ::waitpid(child, &status, 0) != child) {
        throw std::runtime_error("the victim cannot be killed");
    }
    if (!WIFSIGNALED(status)) {
        throw std::runtime_error("the victim ended by itself, its last result " + std::to_string(Progress().failure));
    }
}

}  // namespace zupm::test

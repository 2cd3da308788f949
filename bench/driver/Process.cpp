#include "bench/driver/Process.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>

#include "bench/Demand.h"

namespace zupm::bench {

namespace {

std::vector<char*> PointersTo(const Command& command)
{
    std::vector<char*> pointers;
    for (const std::string& word : command) {
        pointers.push_back(const_cast<char*>(word.c_str()));
    }
    pointers.push_back(nullptr);
    return pointers;
}

/// Starts a program whose standard output is the pipe.
pid_t Start(const Command& command, int output)
{
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
    pid_t child = 0;
    const int result =
        posix_spawnp(&child, command.front().c_str(), &actions, nullptr, PointersTo(command).data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    Demand(result == 0, "starting " + command.front());
    return child;
}

std::string ReadAll(int input)
{
    std::string text;
    char part[4096];
    for (ssize_t count = 0; (count = read(input, part, sizeof part)) > 0;) {
        text.append(part, static_cast<std::size_t>(count));
    }
    return text;
}

void SetLibraryFolder(const std::string& folder)
{
    if (folder.empty()) {
        unsetenv("LD_LIBRARY_PATH");
    } else {
        setenv("LD_LIBRARY_PATH", folder.c_str(), 1);
    }
}

}  // namespace

Finished RunProcess(const Command& command, const std::string& libraryFolder)
{
    SetLibraryFolder(libraryFolder);
    int ends[2];
    Demand(pipe2(ends, O_CLOEXEC) == 0, "making a pipe");
    const auto begin = std::chrono::steady_clock::now();
    const pid_t child = Start(command, ends[1]);
    close(ends[1]);
    Finished finished{0, ReadAll(ends[0])};
    int status = 0;
    const bool isOver = waitpid(child, &status, 0) == child;
    finished.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
    close(ends[0]);
    Demand(isOver && status == 0, command.front());
    return finished;
}

}  // namespace zupm::bench

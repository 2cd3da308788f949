#include "FaultyRun.h"

#include <fcntl.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <future>
#include <system_error>
#include <thread>

namespace zupm::test {
namespace {

struct Call {
    unsigned number;
    const char* name;
};

constexpr Call kStart = {SYS_execve, "execve"};
constexpr Call kLock = {SYS_fcntl, "fcntl"};
/// Every call that these commands make on files, except close: whoever closes a file has flushed it.
constexpr Call kCalls[] = {
    kStart,
    kLock,
    {SYS_openat, "openat"},
    {SYS_fstat, "fstat"},
    {SYS_newfstatat, "newfstatat"},
    {SYS_getdents64, "getdents64"},
    {SYS_readlinkat, "readlinkat"},
    {SYS_faccessat, "faccessat"},
    {SYS_read, "read"},
    {SYS_pread64, "pread64"},
    {SYS_write, "write"},
    {SYS_fsync, "fsync"},
    {SYS_fchown, "fchown"},
    {SYS_fchmod, "fchmod"},
    {SYS_flistxattr, "flistxattr"},
    {SYS_fgetxattr, "fgetxattr"},
    {SYS_fsetxattr, "fsetxattr"},
    {SYS_fremovexattr, "fremovexattr"},
    {SYS_renameat, "renameat"},
    {SYS_renameat2, "renameat2"},
    {SYS_linkat, "linkat"},
    {SYS_unlinkat, "unlinkat"},
    {SYS_getrandom, "getrandom"},
    {SYS_clone3, "clone3"},
#ifdef SYS_unlink
    {SYS_unlink, "unlink"},
    {SYS_readlink, "readlink"},
#endif
};

void RequireCall(bool succeeded, const char* what)
{
    if (!succeeded) {
        throw std::system_error(errno, std::system_category(), what);
    }
}

/// From now on the system asks about these calls of this thread and of the processes that it starts. Returns the file
/// that the questions arrive at.
int ListenToCalls()
{
    std::vector<sock_filter> program = {BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr))};
    for (const Call& call : kCalls) {
        program.push_back(BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, call.number, 0, 1));
        program.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_USER_NOTIF));
    }
    program.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW));
    const sock_fprog filter{static_cast<unsigned short>(program.size()), program.data()};
    RequireCall(prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0, "no new rights");
    const auto listener =
        static_cast<int>(syscall(SYS_seccomp, SECCOMP_SET_MODE_FILTER, SECCOMP_FILTER_FLAG_NEW_LISTENER, &filter));
    RequireCall(listener >= 0, "questions about system calls");
    return listener;
}

/// Answers the questions of one run.
class Supervisor {
public:
    explicit Supervisor(const CallFault& fault) : m_fault(fault) {}

    /// Answers until nobody is left who could ask (Linux 5.9 reports that). `own` is the thread that starts the run;
    /// its calls do not count.
    void Answer(int listener, pid_t own)
    {
        for (;;) {
            pollfd asked{listener, POLLIN, 0};
            if (poll(&asked, 1, -1) < 0 && errno != EINTR) {
                return;
            }
            if ((asked.revents & POLLIN) != 0) {
                AnswerOne(listener, own);
            } else if (asked.revents != 0) {
                return;
            }
        }
    }

    [[nodiscard]] FaultyRun Result(ToolRun run) && { return {std::move(run), std::move(m_calls), m_failedCall}; }

private:
    void AnswerOne(int listener, pid_t own)
    {
        seccomp_notif question{};
        if (ioctl(listener, SECCOMP_IOCTL_NOTIF_RECV, &question) != 0) {
            return;  // whoever asked has ended
        }
        seccomp_notif_resp answer{question.id, 0, 0, SECCOMP_USER_NOTIF_FLAG_CONTINUE};
        if (Counts(question.data, static_cast<pid_t>(question.pid) == own) && IsDue(question.data)) {
            if (m_fault.kills) {
                kill(static_cast<pid_t>(question.pid), SIGKILL);
                return;
            }
            answer.error = -m_fault.error;
            answer.flags = 0;
        }
        ioctl(listener, SECCOMP_IOCTL_NOTIF_SEND, &answer);
    }

    bool Counts(const seccomp_data& call, bool isOwn)
    {
        if (isOwn) {
            return false;
        }
        if (!m_hasStarted) {
            m_hasStarted = static_cast<unsigned>(call.nr) == kStart.number;
            return false;
        }
        return static_cast<unsigned>(call.nr) != kLock.number || call.args[1] == F_OFD_SETLK;
    }

    bool IsDue(const seccomp_data& call)
    {
        const auto number = static_cast<int>(m_calls.size());
        const auto* const named = std::ranges::find(kCalls, static_cast<unsigned>(call.nr), &Call::number);
        m_calls.emplace_back(named->name);
        const bool isDue = m_fault.call >= 0 && (number == m_fault.call || (m_fault.forEver && number > m_fault.call));
        if (isDue && m_failedCall.empty()) {
            m_failedCall = named->name;
        }
        return isDue;
    }

    CallFault m_fault;
    bool m_hasStarted = false;
    std::vector<std::string> m_calls;
    std::string m_failedCall;
};

struct Questions {
    int listener;
    pid_t thread;
};

}  // namespace

FaultyRun RunToolWith(const CallFault& fault, const ToolPlace& place, const std::vector<std::string>& arguments)
{
    // A thread of its own starts the run: the system goes on asking about a thread until it ends.
    std::promise<Questions> asked;
    std::promise<ToolRun> ended;
    std::thread starter([&] {
        try {
            asked.set_value({ListenToCalls(), gettid()});
        } catch (const std::system_error&) {
            asked.set_exception(std::current_exception());
            return;
        }
        try {
            ended.set_value(RunTool(place, arguments));
        } catch (const std::exception&) {
            ended.set_exception(std::current_exception());
        }
    });
    Supervisor supervisor(fault);
    std::exception_ptr failure;
    try {
        const Questions questions = asked.get_future().get();
        supervisor.Answer(questions.listener, questions.thread);
        close(questions.listener);
    } catch (const std::system_error&) {
        failure = std::current_exception();
    }
    starter.join();
    if (failure) {
        std::rethrow_exception(failure);
    }
    return std::move(supervisor).Result(ended.get_future().get());
}

}  // namespace zupm::test

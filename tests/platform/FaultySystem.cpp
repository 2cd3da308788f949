#include "tests/platform/FaultySystem.h"

#include <algorithm>
#include <cerrno>
#include <csignal>

namespace zupm::test {

namespace {

using native::kSystemCalls;
using native::SystemCalls;

struct State {
    Fault fault;
    int calls = 0;
    const char* failedCall = nullptr;
};

constinit State g_state;

bool Fails(const char* name)
{
    const int call = g_state.calls++;
    const bool isDue =
        g_state.fault.call >= 0 && (call == g_state.fault.call || (g_state.fault.forEver && call > g_state.fault.call));
    if (isDue && g_state.failedCall == nullptr) {
        g_state.failedCall = name;
    }
    if (isDue && g_state.fault.kills) {
        std::raise(SIGKILL);
    }
    errno = isDue ? g_state.fault.error : errno;
    return isDue;
}

/// A named call, for use as a template argument.
struct Name {
    consteval Name(const char* text) { std::copy_n(text, std::char_traits<char>::length(text), value); }
    char value[16]{};
};

template <Name name, auto member, class Calls, class Result, class... Arguments>
auto Wrap(Result (*Calls::*)(Arguments...))
{
    return +[](Arguments... arguments) -> Result {
        return Fails(name.value) ? Result{-1} : (kSystemCalls.*member)(arguments...);
    };
}

template <Name name, auto member>
auto Wrap()
{
    return Wrap<name, member>(member);
}

int Close(int file)
{
    const int result = kSystemCalls.close(file);
    return Fails("close") ? -1 : result;
}

std::size_t Portion(std::size_t count)
{
    return g_state.fault.oneByOne ? std::min<std::size_t>(count, 1) : count;
}

ssize_t Read(int file, void* bytes, std::size_t count)
{
    return Fails("read") ? -1 : kSystemCalls.read(file, bytes, Portion(count));
}

ssize_t Write(int file, const void* bytes, std::size_t count)
{
    return Fails("write") ? -1 : kSystemCalls.write(file, bytes, Portion(count));
}

int Flush(int file)
{
    if (Fails("fsync")) {
        return -1;
    }
    return g_state.fault.skipsFlushes ? 0 : kSystemCalls.fsync(file);
}

SystemCalls FaultyCalls()
{
    SystemCalls calls = kSystemCalls;
    calls.openat = Wrap<"openat", &SystemCalls::openat>();
    calls.mkdirat = Wrap<"mkdirat", &SystemCalls::mkdirat>();
    calls.fstat = Wrap<"fstat", &SystemCalls::fstat>();
    calls.fstatat = Wrap<"fstatat", &SystemCalls::fstatat>();
    calls.faccessat = Wrap<"faccessat", &SystemCalls::faccessat>();
    calls.readlinkat = Wrap<"readlinkat", &SystemCalls::readlinkat>();
    calls.pread = Wrap<"pread", &SystemCalls::pread>();
    calls.poll = Wrap<"poll", &SystemCalls::poll>();
    calls.flock = Wrap<"flock", &SystemCalls::flock>();
    calls.setlock = Wrap<"setlock", &SystemCalls::setlock>();
    calls.fchown = Wrap<"fchown", &SystemCalls::fchown>();
    calls.fchmod = Wrap<"fchmod", &SystemCalls::fchmod>();
    calls.flistxattr = Wrap<"flistxattr", &SystemCalls::flistxattr>();
    calls.fgetxattr = Wrap<"fgetxattr", &SystemCalls::fgetxattr>();
    calls.fsetxattr = Wrap<"fsetxattr", &SystemCalls::fsetxattr>();
    calls.fremovexattr = Wrap<"fremovexattr", &SystemCalls::fremovexattr>();
    calls.renameat = Wrap<"renameat", &SystemCalls::renameat>();
    calls.unlinkat = Wrap<"unlinkat", &SystemCalls::unlinkat>();
    calls.getrandom = Wrap<"getrandom", &SystemCalls::getrandom>();
    calls.close = Close;
    calls.read = Read;
    calls.write = Write;
    calls.fsync = Flush;
    return calls;
}

const SystemCalls kFaultyCalls = FaultyCalls();

}  // namespace

FaultySystem::FaultySystem(const Fault& fault)
{
    g_state = {fault, 0, nullptr};
    native::ReplaceSystemCalls(&kFaultyCalls);
}

FaultySystem::~FaultySystem()
{
    native::ReplaceSystemCalls(nullptr);
}

std::string FaultySystem::FailedCall() const
{
    return g_state.failedCall == nullptr ? std::string() : std::string(g_state.failedCall);
}

}  // namespace zupm::test

#include "fuzz/support/Host.h"

#include "fuzz/support/Demand.h"
#include "platform/posix/SystemCalls.h"

namespace zupm::fuzz {

namespace {

int NoFlush(int)
{
    return 0;
}

const native::SystemCalls& CallsThatNeverFlush()
{
    static const native::SystemCalls calls = [] {
        native::SystemCalls own = native::kSystemCalls;
        own.fsync = NoFlush;
        return own;
    }();
    return calls;
}

}  // namespace

Host::Host()
{
    Demand(m_component.Started() == S_OK, "the component starts");
    native::ReplaceSystemCalls(&CallsThatNeverFlush());
}

Host& Host::Get()
{
    static Host host;
    return host;
}

std::u16string Host::Write(std::u16string_view name, std::string_view bytes) const
{
    return m_folder.Write(name, bytes);
}

}  // namespace zupm::fuzz

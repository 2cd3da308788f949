#include "tests/support/ComponentHost.h"

#include <chrono>

#include "common/Resources.h"
#include "platform/Modules.h"
#include "tests/support/ClassAnnouncement.h"

namespace zupm::test {

namespace {

constexpr std::u16string_view kResourceModule = u"AgentRes.dll";

// The folder that ResourceFolder goes back to.
constinit const TempFolder* g_resources = nullptr;

std::u16string HostFolder()
{
    return g_resources == nullptr ? std::u16string() : g_resources->Folder().u16string();
}

}  // namespace

ComponentHost::ComponentHost()
{
    const std::filesystem::path own(OwnModuleFolder());
    const std::filesystem::path copy = m_resources.Folder() / kResourceModule;
    std::filesystem::copy_file(own / kResourceModule, copy);
    // The component keeps what it reads from a file that is some seconds old. A new one becomes that old in the middle
    // of a test that counts allocations.
    std::filesystem::last_write_time(copy, std::filesystem::file_time_type::clock::now() - std::chrono::hours(1));
    g_resources = &m_resources;
    SetResourceFolder(HostFolder());
    m_started = CoInitializeEx(nullptr, COINIT_MULTITHREADED);
    if (SUCCEEDED(m_started)) {
        m_started = AnnounceTestClasses();
    }
}

ComponentHost::~ComponentHost()
{
    WithdrawTestClasses();
    CoUninitialize();
    SetResourceFolder({});
    g_resources = nullptr;
}

ResourceFolder::ResourceFolder(const std::u16string& folder)
{
    SetResourceFolder(folder);
}

ResourceFolder::~ResourceFolder()
{
    SetResourceFolder(HostFolder());
}

}  // namespace zupm::test

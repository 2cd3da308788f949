#include "tests/support/ComponentHost.h"

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
    std::filesystem::copy_file(own / kResourceModule, m_resources.Folder() / kResourceModule);
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

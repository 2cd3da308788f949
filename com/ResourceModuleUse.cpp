#include "com/ResourceModuleUse.h"

#include <new>
#include <utility>

#include "com/AtomicShared.h"
#include "common/Resources.h"

namespace zupm {

namespace {

constexpr std::u16string_view kResourceModule = u"AgentRes.dll";

// Never destroyed: a client may release its last object after the module's own clean-up at process exit. There is
// nothing to destroy by then in the normal case, because the last object released the handle.
union ResourceHandle {
    constexpr ResourceHandle() noexcept : handle() {}
    ResourceHandle(const ResourceHandle&) = delete;
    ResourceHandle& operator=(const ResourceHandle&) = delete;
    ~ResourceHandle() {}  // NOLINT(modernize-use-equals-default): a defaulted one would be deleted

    AtomicShared<const ResourceModule> handle;
};

constinit ResourceHandle g_resources;

}  // namespace

ResourceModuleUse::~ResourceModuleUse()
{
    // Given: see docs/given-oddities.md, "one object releases for all".
    g_resources.handle.Store(nullptr);
}

result::Code ResourceModuleUse::EnsureLoaded() noexcept
{
    if (g_resources.handle.Load() != nullptr) {
        return result::Success;
    }
    try {
        auto module = LoadResourceDLLW(kResourceModule, GetUserDefaultLangID());
        if (module == nullptr) {
            return result::GeneralFailure;
        }
        g_resources.handle.Store(std::move(module));
        return result::Success;
    } catch (const std::bad_alloc&) {
        return result::OutOfMemory;
    } catch (...) {
        return result::GeneralFailure;
    }
}

std::shared_ptr<const ResourceModule> ResourceModuleUse::Current() noexcept
{
    return g_resources.handle.Load();
}

}  // namespace zupm

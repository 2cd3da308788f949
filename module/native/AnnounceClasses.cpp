#include "module/native/AnnounceClasses.h"

#include <algorithm>
#include <array>
#include <iterator>

#include "module/ModuleObjects.h"
#include "module/ModuleServer.h"

namespace zupm {

namespace {

/// The runtime finds a class by its ProgID without the version too.
constexpr auto kEntries = [] {
    std::array<ZuClassEntry, std::size(kModuleObjects)> entries{};
    std::ranges::transform(kModuleObjects, entries.begin(), [](const ObjectMapRow& row) {
        return ZuClassEntry{row.clsid, row.progId};
    });
    return entries;
}();

}  // namespace

HRESULT AnnounceClasses() noexcept
{
    return ZuAnnounceModule(kEntries.data(), kEntries.size(), &ModuleGetClassObject);
}

void WithdrawClasses() noexcept
{
    ZuWithdrawModule(&ModuleGetClassObject);
}

}  // namespace zupm

#include "module/Registry.h"

#include "zuPolicyManager/zucomrt.h"

namespace zupm::registry {
namespace {

/// The runtime takes null-terminated texts: one with an embedded null would name something else there.
bool HasEmbeddedNull(const std::u16string& text)
{
    return text.find(u'\0') != std::u16string::npos;
}

}  // namespace

result::Code CreateKey(const std::u16string& key) noexcept
{
    return HasEmbeddedNull(key) ? result::InvalidName : ZuRegistryCreateKey(key.c_str());
}

result::Code SetValue(const std::u16string& key, const std::u16string& name, const std::u16string& value) noexcept
{
    if (HasEmbeddedNull(key) || HasEmbeddedNull(name) || HasEmbeddedNull(value)) {
        return result::InvalidName;
    }
    return ZuRegistrySetValue(key.c_str(), name.empty() ? nullptr : name.c_str(), value.c_str());
}

result::Code DeleteTree(const std::u16string& key) noexcept
{
    return HasEmbeddedNull(key) ? result::InvalidName : ZuRegistryDeleteTree(key.c_str());
}

}  // namespace zupm::registry

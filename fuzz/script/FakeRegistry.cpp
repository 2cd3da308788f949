#include "fuzz/script/FakeRegistry.h"

#include "module/Registry.h"
#include "text/Utf.h"

namespace zupm {

namespace fuzz {

runtime::RegistryText& FakeRegistry()
{
    static runtime::RegistryText registry;
    return registry;
}

}  // namespace fuzz

namespace registry {

result::Code CreateKey(const std::u16string& key) noexcept
{
    return fuzz::FakeRegistry().CreateKey(ToUtf8Lossy(key));
}

result::Code SetValue(const std::u16string& key, const std::u16string& name, const std::u16string& value) noexcept
{
    return fuzz::FakeRegistry().SetValue(ToUtf8Lossy(key), ToUtf8Lossy(name), ToUtf8Lossy(value));
}

result::Code DeleteTree(const std::u16string& key) noexcept
{
    fuzz::FakeRegistry().DeleteTree(ToUtf8Lossy(key));
    return result::Success;
}

}  // namespace registry

}  // namespace zupm

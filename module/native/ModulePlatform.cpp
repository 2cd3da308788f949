#include "module/ModulePlatform.h"

#include "module/native/Scripts.h"

namespace zupm {

std::string_view RegistryScriptText(unsigned number) noexcept
{
    for (const EmbeddedScript& script : kScripts) {
        if (script.number == number) {
            return script.text;
        }
    }
    return {};
}

result::Code RegisterModuleTypeLibrary(const std::u16string&) noexcept
{
    return result::Success;
}

result::Code UnregisterModuleTypeLibrary() noexcept
{
    return result::Success;
}

}  // namespace zupm

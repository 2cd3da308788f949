#include "tools/zupolicy/client/Entry.h"

namespace zupm::tool {

std::optional<std::u16string> Entry::Find(std::u16string_view section, std::u16string_view name)
{
    try {
        return Get(section, name);
    } catch (const CallError& error) {
        if (error.Code() == ExitCode::NotFound) {
            return std::nullopt;
        }
        throw;
    }
}

}  // namespace zupm::tool

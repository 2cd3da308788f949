/// The names that a backup may have.
#pragma once

#include <optional>
#include <string>

#include "tools/zupolicy/client/Failure.h"

namespace zupm::tool {

/// Calls `create` with one name after the other until it returns a result; it returns nothing for a name that is taken.
template <class Create>
auto CreateUnderFreeName(const std::string& file, const std::string& suffix, Create create)
{
    constexpr int kMostBackups = 9999;
    for (int number = 0; number <= kMostBackups; ++number) {
        const std::string name = file + suffix + (number == 0 ? "" : "." + std::to_string(number));
        if (auto created = create(name)) {
            return *std::move(created);
        }
    }
    throw Failure(ExitCode::FileError, file + ": there are too many backups of it");
}

}  // namespace zupm::tool

/// Names of files that are none.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "zuPolicyManager/zuPolicyManager.h"

namespace zupm::test {

/// Loading ends in one of these codes; writing too, or in what the system has to say about a device.
struct NameRow {
    std::string_view label;
    std::u16string name;
    bool isInFolder;
    std::vector<HRESULT> codes;
};

inline const std::vector<HRESULT> kNoSuchName = {result::InvalidName,     result::FileNotFound, result::PathNotFound,
                                                 result::NameTooLong,     result::AccessDenied, result::NotSupported,
                                                 result::InputOutputError};

/// Those that mean something to this system alone.
[[nodiscard]] std::vector<NameRow> NamesOfTheSystem();

}  // namespace zupm::test

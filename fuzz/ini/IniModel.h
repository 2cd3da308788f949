/// What writing one setting must do to the lines of an INI file.
#pragma once

#include <string_view>

#include "fuzz/ini/IniReader.h"

namespace zupm::fuzz {

/// One setting to be written.
struct IniWrite {
    std::u16string section;
    std::u16string key;
    std::u16string value;
};

/// Demands that `after` has the setting where it belongs, and every other line of `before` as it was.
void DemandOnlyThisWritten(const IniLines& before, const IniLines& after, const IniWrite& write);

}  // namespace zupm::fuzz

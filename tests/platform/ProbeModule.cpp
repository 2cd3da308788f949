#include <string>

#include "platform/Modules.h"

/// The folder of the module that holds this function, written to `text`; its length.
extern "C" __attribute__((visibility("default"))) std::size_t ProbeFolder(char16_t* text, std::size_t capacity)
{
    const std::u16string folder = zupm::OwnModuleFolder();
    return folder.copy(text, capacity);
}

#include <dlfcn.h>
#include <link.h>

#include <cstdint>

#include "platform/Files.h"
#include "platform/Modules.h"
#include "platform/posix/TextFields.h"
#include "text/Utf.h"

namespace zupm {

namespace {

using namespace native;

/// The file in a line of the process's memory map; empty unless the line's range holds the address.
std::string_view MappedFile(std::string_view line, std::uintptr_t address)
{
    std::uintptr_t begin = 0;
    std::uintptr_t end = 0;
    const bool isRange = ReadNumber(TakeUpTo(line, '-'), 16, begin) && ReadNumber(TakeUpTo(line, ' '), 16, end);
    const std::size_t path = line.find('/');
    if (!isRange || address < begin || address >= end || path == line.npos) {
        return {};
    }
    return line.substr(path);
}

/// The mapped file's full path, whatever the current folder was and is.
std::string MappedFileAt(const void* address)
{
    std::string map;
    if (ReadWholeFile(u"/proc/self/maps", map) != result::Success) {
        return {};
    }
    for (std::string_view rest = map; !rest.empty();) {
        const std::string_view file = MappedFile(TakeUpTo(rest, '\n'), reinterpret_cast<std::uintptr_t>(address));
        if (!file.empty()) {
            return std::string(file);
        }
    }
    return {};
}

/// An address in this module.
constinit const char g_marker = 0;

}  // namespace

std::u16string OwnModulePath()
{
    Dl_info info;
    void* map = nullptr;
    std::string path;
    if (dladdr1(&g_marker, &info, &map, RTLD_DL_LINKMAP) != 0) {
        path = static_cast<const link_map*>(map)->l_name;
    }
    // The program itself has no name here, and a module loaded by a relative path has one that depends on the folder
    // that was current then.
    if (!path.starts_with('/')) {
        path = MappedFileAt(&g_marker);
    }
    return ToUtf16(path).value_or(std::u16string());
}

}  // namespace zupm

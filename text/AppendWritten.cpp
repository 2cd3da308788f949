// Compiled as C++23: an older string has no way to grow without being filled.
#include "text/AppendWritten.h"

namespace zupm {

void AppendWritten(std::string& text, std::size_t size, const WriteBytes& write)
{
    const std::size_t before = text.size();
    text.resize_and_overwrite(before + size,
                              [&](char* bytes, std::size_t) noexcept { return before + write(bytes + before, size); });
}

}  // namespace zupm

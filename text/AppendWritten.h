/// Strings that somebody else writes.
#pragma once

#include <cstddef>
#include <functional>
#include <string>

namespace zupm {

/// Writes up to `size` bytes and returns how many it wrote. Does not throw.
using WriteBytes = std::function<std::size_t(char* bytes, std::size_t size)>;

/// Appends what `write` writes when it is given `size` bytes. They are not filled with zeros before, as by
/// std::string::resize, which takes about half as long as reading a file. Throws std::bad_alloc, before `write` is
/// called.
void AppendWritten(std::string& text, std::size_t size, const WriteBytes& write);

}  // namespace zupm

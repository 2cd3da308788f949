/// A file's bytes on their way to a stream.
#pragma once

#include <filesystem>
#include <iosfwd>

namespace zupm::tool {

/// Writes all bytes of the file to the stream, unchanged. Throws std::system_error when the file cannot be read; the
/// stream says itself when it cannot be written.
void CopyFile(const std::filesystem::path& path, std::ostream& out);

}  // namespace zupm::tool

/// One setting written into one INI file: the input, and a recording of the bytes that the system's own call gives.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace zupm::test {

struct IniCase {
    std::optional<std::string> before;  ///< the file's bytes; nothing for a missing file
    std::u16string section;
    std::u16string key;
    std::u16string value;

    friend bool operator==(const IniCase&, const IniCase&) = default;
};

/// A case with the file's bytes afterwards.
struct IniRecord {
    IniCase input;
    std::string after;
};

/// The cases of the recording, always the same: chosen ones, then random ones.
///
/// What 8-bit files and names hold is ASCII: the bytes are the same in every code page then, and in UTF-8.
[[nodiscard]] std::vector<IniCase> IniCases();

/// Random cases; no part of a setting holds CR, LF or NUL.
[[nodiscard]] std::vector<IniCase> RandomIniCases(unsigned seed, std::size_t count);

/// UTF-16 with its signature.
[[nodiscard]] std::string WideIni(std::u16string_view text);

/// The recording: one line a case, of five columns with tabs between. Bytes that are not printable ASCII, and the
/// backslash, are escaped; names and values are UTF-8; a missing file is `(none)`.
[[nodiscard]] std::vector<IniRecord> ReadRecording(const std::filesystem::path& path);
void WriteRecording(const std::filesystem::path& path, const std::vector<IniRecord>& records);

}  // namespace zupm::test

/// Folders and files of a test.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace zupm::test {

/// A new empty folder, removed with everything in it at the end.
class TempFolder {
public:
    TempFolder();
    ~TempFolder();
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    [[nodiscard]] const std::filesystem::path& Folder() const { return m_folder; }
    /// The full path of a file in it.
    [[nodiscard]] std::u16string Path(std::u16string_view name) const;
    /// Writes a file in it and gives its full path.
    std::u16string Write(std::u16string_view name, std::string_view bytes) const;
    [[nodiscard]] std::string Read(std::u16string_view name) const;
    [[nodiscard]] bool Has(std::u16string_view name) const;
    /// The names in it, sorted.
    [[nodiscard]] std::vector<std::string> Names() const;

private:
    std::filesystem::path m_folder;
};

/// Whole files, byte for byte; they throw when the file cannot be used.
void WriteBytes(std::u16string_view path, std::string_view bytes);
[[nodiscard]] std::string ReadBytes(std::u16string_view path);

}  // namespace zupm::test

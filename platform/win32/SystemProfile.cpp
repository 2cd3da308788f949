#include "platform/win32/SystemProfile.h"

#include <windows.h>

#include <algorithm>

#include "platform/Files.h"
#include "platform/win32/Handle.h"
#include "platform/win32/UnguessableName.h"
#include "platform/win32/Wide.h"

namespace zupm::win32 {

namespace {

constexpr std::size_t kPieceOfCopy = std::size_t{16} << 20;

/// A new file among the user's temporary files.
///
/// Lifetime  The file is deleted with the object.
class PrivateFile {
public:
    explicit PrivateFile(std::string_view bytes) : m_isWritten(Create() && Fill(bytes)) {}
    ~PrivateFile()
    {
        m_file.reset();
        if (!m_path.empty()) {
            DeleteFileW(Wide(m_path));
        }
    }
    PrivateFile(const PrivateFile&) = delete;
    PrivateFile& operator=(const PrivateFile&) = delete;

    [[nodiscard]] bool IsWritten() const noexcept { return m_isWritten; }
    [[nodiscard]] const std::u16string& Path() const noexcept { return m_path; }

private:
    bool Create();
    bool Fill(std::string_view bytes);

    std::u16string m_path;
    Handle m_file;
    bool m_isWritten;
};

bool PrivateFile::Create()
{
    std::u16string path(MAX_PATH + 1, u'\0');
    path.resize(std::min<std::size_t>(GetTempPathW(MAX_PATH + 1, WideBuffer(path)), MAX_PATH));
    std::u16string name;
    if (path.empty() || UnguessableName(name) < 0) {
        return false;
    }
    path += name;
    // Shared with nobody until the system's call opens it; never brought to the disk if memory suffices.
    m_file = OwnFile(CreateFileW(Wide(path), GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_TEMPORARY, nullptr));
    if (m_file == nullptr) {
        return false;
    }
    m_path = std::move(path);
    return true;
}

bool PrivateFile::Fill(std::string_view bytes)
{
    while (!bytes.empty()) {
        DWORD written = 0;
        const auto piece = static_cast<DWORD>(std::min(bytes.size(), kPieceOfCopy));
        if (WriteFile(m_file.get(), bytes.data(), piece, &written, nullptr) == 0 || written == 0) {
            return false;
        }
        bytes.remove_prefix(written);
    }
    m_file.reset();
    return true;
}

}  // namespace

std::optional<std::string> WrittenBySystem(const std::string& bytes, const ProfileSetting& setting)
{
    const std::u16string section(setting.section);
    const std::u16string key(setting.key);
    const std::u16string value(setting.value);
    const PrivateFile file(bytes);
    if (!file.IsWritten() ||
        ::WritePrivateProfileStringW(Wide(section), Wide(key), Wide(value), Wide(file.Path())) == 0) {
        return std::nullopt;
    }
    std::string changed;
    return ReadWholeFile(file.Path(), changed) == result::Success ? std::optional(std::move(changed)) : std::nullopt;
}

}  // namespace zupm::win32

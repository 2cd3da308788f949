/// A file that is edited in place, and its folder, both open.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/ByteSource.h"
#include "platform/win32/Handle.h"
#include "platform/win32/Replacement.h"
#include "platform/win32/ReplacementGate.h"

namespace zupm::win32 {

/// Identifies the file of a handle, whatever its names are.
struct FileIdentity {
    std::uint32_t volume = 0;
    std::uint64_t index = 0;

    friend bool operator==(const FileIdentity&, const FileIdentity&) = default;
};

/// HeldFile on Windows; HeldFile.h has the contract. Methods may throw std::bad_alloc.
///
/// Folder    Held without shared deletion, so that neither it nor a folder above it can be renamed: the folder's path
///           with the file's name keeps its meaning.
/// Let go    Where the system cannot rename over an open file, the handle is closed for the moment of a move, and with
///           it the lock; other editors wait at the gate. After a failed move both are taken again, at once or with the
///           next call. If an editor without a gate was faster, calls give FileLocked until that editor ends, and then
///           FileChanged if it wrote.
class OpenedFile final : private TargetHolder {
public:
    OpenedFile() = default;
    ~OpenedFile() { Release(); }
    OpenedFile(const OpenedFile&) = delete;
    OpenedFile& operator=(const OpenedFile&) = delete;

    [[nodiscard]] result::Code Open(std::u16string_view path);
    [[nodiscard]] result::Code TryLock();
    [[nodiscard]] result::Code Read(std::string& bytes);
    [[nodiscard]] result::Code CheckUnchanged(RepeatableBytes& expected);
    [[nodiscard]] result::Code RehearseReplace();
    [[nodiscard]] result::Code Replace(ByteSource& bytes, RepeatableBytes* expected);

private:
    [[nodiscard]] result::Code HoldOpened();
    [[nodiscard]] result::Code HoldFolder();
    [[nodiscard]] result::Code CheckName() const;
    [[nodiscard]] result::Code Reopen();
    [[nodiscard]] result::Code HoldAgain();
    [[nodiscard]] result::Code InspectTarget();
    [[nodiscard]] result::Code PrepareTarget();
    [[nodiscard]] result::Code CheckFolder() const;
    result::Code PrepareMove() override;
    void LetGo() noexcept override;
    [[nodiscard]] result::Code Lock();
    void Release() noexcept;

    Handle m_folder;
    Handle m_file;
    FileIdentity m_identity;
    bool m_isLocked = false;
    bool m_wantsLock = false;
    /// Entered from the moment that the file is let go until it is held again or replaced.
    ReplacementGate m_gate;
    /// What the current replacement expects; null when it replaces whatever it finds.
    RepeatableBytes* m_expected = nullptr;
    /// The file as it was last inspected; its path is the held folder's with the file's name.
    Target m_target;
};

}  // namespace zupm::win32

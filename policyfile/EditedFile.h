/// The file that an edit reads and replaces.
#pragma once

#include <chrono>
#include <string>
#include <string_view>

#include "platform/ByteSource.h"
#include "platform/HeldFile.h"
#include "xml/UtfEncodings.h"
#include "xml/XmlText.h"
#include "zuPolicyManager/Results.h"

namespace zupm {

/// A locked file and the bytes that it held when it was loaded.
///
/// Lifetime  The lock ends with Close and with the object.
/// Threads   None of its own; the owning CPolicyFile holds its lock around every call.
/// Errors    Result codes. All operations but Open and Close need an open edit.
class EditedFile {
public:
    [[nodiscard]] bool IsOpen() const noexcept { return m_file.IsOpen(); }

    /// Ends an edit, waits up to `patience` for the file's lock and reads the file. The codes of HeldFile; FileLocked
    /// when the lock was never free. Nothing is open after a failure.
    [[nodiscard]] result::Code Open(std::u16string_view path, std::chrono::milliseconds patience);
    void Close() noexcept;

    /// Opens the file and gives its text, as ReadBufferFromFile does. Throws ReadWriteException with a code of Open, or
    /// 0x80070459.
    void ReadText(std::u16string_view path, std::chrono::milliseconds patience, AdvXMLParser::XmlText& buffer,
                  AdvXMLParser::UTF_ENCODINGS& encoding);

    /// Success, FileChanged, or the code with which the comparison failed.
    [[nodiscard]] result::Code CheckUnchanged() noexcept { return m_file.CheckUnchanged(m_bytes); }
    /// The code that Commit would fail with, as far as it can be known without leaving a trace; FileChanged.
    [[nodiscard]] result::Code Rehearse(bool force) noexcept;
    /// Replaces the file; with `force` even one that was changed. Ends the edit when the new file is in place (Success,
    /// WrittenNotFlushed); after any other code the file is as it was.
    [[nodiscard]] result::Code Commit(ByteSource& bytes, bool force) noexcept;

private:
    HeldFile m_file;
    std::string m_bytes;
};

}  // namespace zupm

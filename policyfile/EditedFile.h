/// The file that an edit reads and replaces.
#pragma once

#include <chrono>
#include <string_view>

#include "platform/ByteSource.h"
#include "platform/HeldFile.h"
#include "xml/UtfEncodings.h"
#include "xml/XmlText.h"
#include "zuPolicyManager/Results.h"

namespace zupm {

/// A locked file. The bytes that it held when it was loaded are the caller's, who gives them to each comparison.
///
/// Lifetime  The lock ends with Close and with the object.
/// Threads   None of its own; the owning CPolicyFile holds its lock around every call.
/// Errors    Result codes. All operations but the opening and Close need an open edit.
class EditedFile {
public:
    [[nodiscard]] bool IsOpen() const noexcept { return m_file.IsOpen(); }

    /// Ends an edit and waits up to `patience` for the file's lock. The codes of HeldFile; FileLocked when the lock was
    /// never free. Nothing is open after a failure.
    [[nodiscard]] result::Code Open(std::u16string_view path, std::chrono::milliseconds patience) noexcept;
    void Close() noexcept { m_file.Close(); }

    /// Opens the file and gives its text, as ReadBufferFromFile does. Throws ReadWriteException with a code of Open or
    /// of reading, or 0x80070459.
    void ReadText(std::u16string_view path, std::chrono::milliseconds patience, AdvXMLParser::XmlText& buffer,
                  AdvXMLParser::UTF_ENCODINGS& encoding);

    /// Success, FileChanged, or the code with which the comparison failed.
    [[nodiscard]] result::Code CheckUnchanged(RepeatableBytes& loaded) noexcept
    {
        return m_file.CheckUnchanged(loaded);
    }
    /// The code that Commit would fail with, as far as it can be known without leaving a trace; FileChanged. Without
    /// `loaded` a changed file is replaced, too.
    [[nodiscard]] result::Code Rehearse(RepeatableBytes* loaded) noexcept;
    /// Replaces the file; without `loaded` even one that was changed. Ends the edit when the new file is in place
    /// (Success, WrittenNotFlushed); after any other code the file is as it was.
    [[nodiscard]] result::Code Commit(ByteSource& bytes, RepeatableBytes* loaded) noexcept;

private:
    HeldFile m_file;
};

}  // namespace zupm

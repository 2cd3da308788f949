/// Whole files: reading one, and replacing one so that a reader sees the old or the new text and nothing between.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "platform/ByteSource.h"
#include "zuPolicyManager/Results.h"

namespace zupm {

/// The largest file that is read, and the largest document that is written: offsets into a document are 32 bits wide,
/// and the parser's index is signed.
inline constexpr std::size_t kLargestFile = 0x7FFFFFFF;

/// What a loss of power leaves after the call returned: the new file, or perhaps the old one. A reader always finds one
/// of the two whole, after a loss of power too.
enum class Durability { Flushed, LeftToTheSystem };

/// Reads a regular file whole into `bytes` (left empty on failure).
/// FileNotFound, PathNotFound, AccessDenied (also for a folder), NotSupported (a device, pipe or socket: never opened
/// in a way that could wait), FileTooLarge, InvalidName (an empty path, an embedded null, an unpaired surrogate),
/// InputOutputError, OutOfMemory.
[[nodiscard]] result::Code ReadWholeFile(std::u16string_view path, std::string& bytes) noexcept;

/// Whether a regular file holds the expected bytes and no more: Success or FileChanged, otherwise the codes of
/// ReadWholeFile. The file is read in pieces, without its lock. OutOfMemory when the bytes throw.
[[nodiscard]] result::Code CompareFile(std::u16string_view path, RepeatableBytes& expected) noexcept;

/// The path as it means the same file after the process went to another folder. Links in it stay as they are. A path
/// that cannot be completed is returned as it is: one that names nothing, or a relative one when the name of the
/// current folder is unknown or no text. Throws std::bad_alloc.
[[nodiscard]] std::u16string AbsolutePath(std::u16string_view path);

/// Replaces the file at `path` by `bytes` in one step, or creates it.
///
/// A temporary file beside the target (exclusive, unguessable name, readable by its owner alone until it has the
/// target's permissions) is written, flushed to the disk and renamed over it, and the folder is flushed (Durability).
/// Permissions, owner and extended attributes are kept; a symbolic link stays and its target is replaced; a target that
/// may not be written is refused. A target that is no regular file is written directly. On failure the old file is as
/// it was and no temporary is left; only when flushing the folder fails (InputOutputError) the new file is in place,
/// and a loss of power may bring the old one back. The codes of ReadWholeFile, and WriteProtected, DiskFull,
/// QuotaExceeded, SharingViolation, NameTooLong.
/// OutOfMemory when the source throws.
[[nodiscard]] result::Code ReplaceFileAtomically(std::u16string_view path, ByteSource& bytes,
                                                 Durability durability = Durability::Flushed) noexcept;
[[nodiscard]] inline result::Code ReplaceFileAtomically(std::u16string_view path, std::string_view bytes,
                                                        Durability durability = Durability::Flushed) noexcept
{
    OnePiece piece(bytes);
    return ReplaceFileAtomically(path, piece, durability);
}

}  // namespace zupm

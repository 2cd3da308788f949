#include "platform/Files.h"

#include <windows.h>

#include <new>

#include "platform/win32/Errors.h"
#include "platform/win32/FileBytes.h"
#include "platform/win32/Handle.h"
#include "platform/win32/Paths.h"
#include "platform/win32/Replacement.h"
#include "platform/win32/Wide.h"

namespace zupm {

namespace {

using win32::CodeFromError;
using win32::Handle;
using win32::Wide;

/// Opens an existing file, waiting a short while for a writer that keeps readers out.
result::Code OpenForReading(const std::u16string& full, Handle& file) noexcept
{
    win32::Patience patience;
    for (;;) {
        file = win32::OwnFile(CreateFileW(Wide(full), GENERIC_READ, win32::kShareAll, nullptr, OPEN_EXISTING,
                                          FILE_ATTRIBUTE_NORMAL | FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
        if (file != nullptr) {
            return result::Success;
        }
        const DWORD error = GetLastError();
        if (error != ERROR_SHARING_VIOLATION || !patience.Wait()) {
            return CodeFromError(error);
        }
    }
}

/// Opens an existing file of a disk.
result::Code OpenToRead(std::u16string_view path, Handle& file)
{
    std::u16string full;
    if (const result::Code code = win32::FullPath(path, full); code < 0) {
        return code;
    }
    if (win32::NamesDevice(full)) {
        return result::NotSupported;
    }
    if (const result::Code code = OpenForReading(full, file); code < 0) {
        return code;
    }
    return GetFileType(file.get()) == FILE_TYPE_DISK ? result::Success : result::NotSupported;
}

result::Code Read(std::u16string_view path, std::string& bytes)
{
    Handle file;
    const result::Code code = OpenToRead(path, file);
    return code < 0 ? code : win32::ReadAll(file.get(), bytes);
}

}  // namespace

result::Code ReadWholeFile(std::u16string_view path, std::string& bytes) noexcept
{
    bytes.clear();
    result::Code code = result::OutOfMemory;
    try {
        code = Read(path, bytes);
    } catch (const std::bad_alloc&) {
        code = result::OutOfMemory;
    } catch (...) {
        code = result::InputOutputError;
    }
    if (code < 0) {
        bytes.clear();
    }
    return code;
}

result::Code CompareFile(std::u16string_view path, RepeatableBytes& expected) noexcept
{
    try {
        Handle file;
        const result::Code code = OpenToRead(path, file);
        return code < 0 ? code : win32::Compare(file.get(), expected);
    } catch (const std::bad_alloc&) {
        return result::OutOfMemory;
    } catch (...) {
        return result::InputOutputError;
    }
}

std::u16string AbsolutePath(std::u16string_view path)
{
    std::u16string full;
    return win32::FullPath(path, full) < 0 ? std::u16string(path) : full;
}

// The move is written through and the folder flushed whichever durability is asked for.
result::Code ReplaceFileAtomically(std::u16string_view path, ByteSource& bytes, Durability) noexcept
{
    try {
        std::u16string full;
        if (const result::Code code = win32::FullPath(path, full); code < 0) {
            return code;
        }
        return win32::ReplaceFull(full, bytes);
    } catch (const std::bad_alloc&) {
        return result::OutOfMemory;
    } catch (...) {
        return result::InputOutputError;
    }
}

}  // namespace zupm

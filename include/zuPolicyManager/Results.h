/// Every result code of the component, with its name and the sentence that error information gives for it.
#pragma once

#include <cstdint>
#include <string_view>

namespace zupm::result {

/// Results are signed 32-bit numbers: 0 or more is success, negative is failure.
using Code = std::int32_t;

inline constexpr Code Success = 0;
inline constexpr Code Unexpected = -2;
inline constexpr Code AllocationFailed = -3;
inline constexpr Code NotInitialised = -4;
inline constexpr Code ReadOnly = -5;
inline constexpr Code CursorNotInitialised = -11;
inline constexpr Code BadArgument = -13;
inline constexpr Code PlatformException = -32;
inline constexpr Code ElementMissing = -1100;
inline constexpr Code SyntaxError = -1106;
inline constexpr Code ListEmpty = -1111;
inline constexpr Code EndOfList = -1112;
inline constexpr Code RecordMissing = -1113;
inline constexpr Code SectionNotFound = -1200;
inline constexpr Code SettingNotFound = -1201;
inline constexpr Code NotCreated = -1203;
inline constexpr Code SectionStillMissing = -1205;
inline constexpr Code PolicyNotFound = -1207;
inline constexpr Code TaskNotFound = -1208;

// Editing a file in place (IPolicyFileEdit).
inline constexpr Code FileLocked = -1301;
inline constexpr Code FileChanged = -1302;
inline constexpr Code WrittenNotFlushed = -1303;
inline constexpr Code OwnerNotKept = -1304;

inline constexpr Code GeneralFailure = static_cast<Code>(0x80004005u);
inline constexpr Code OutOfMemory = static_cast<Code>(0x8007000Eu);

// Reading and writing files.
inline constexpr Code FileNotFound = static_cast<Code>(0x80070002u);
inline constexpr Code PathNotFound = static_cast<Code>(0x80070003u);
inline constexpr Code TooManyOpenFiles = static_cast<Code>(0x80070004u);
inline constexpr Code AccessDenied = static_cast<Code>(0x80070005u);
inline constexpr Code WriteProtected = static_cast<Code>(0x80070013u);
inline constexpr Code SharingViolation = static_cast<Code>(0x80070020u);
inline constexpr Code NotSupported = static_cast<Code>(0x80070032u);
inline constexpr Code DiskFull = static_cast<Code>(0x80070070u);
inline constexpr Code InvalidName = static_cast<Code>(0x8007007Bu);
inline constexpr Code NameTooLong = static_cast<Code>(0x800700CEu);
inline constexpr Code FileTooLarge = static_cast<Code>(0x800700DFu);
inline constexpr Code NotValidInItsEncoding = static_cast<Code>(0x80070459u);
inline constexpr Code QuotaExceeded = static_cast<Code>(0x8007050Fu);
inline constexpr Code InputOutputError = static_cast<Code>(0x8007045Du);

/// One row of the table below.
struct Meaning {
    Code code;
    std::string_view name;  ///< The name of the constant above, for messages that people search for.
    std::u16string_view sentence;
};

inline constexpr Meaning kMeanings[] = {
    {Success, "Success", u"The operation succeeded."},
    {Unexpected, "Unexpected",
     u"An unexpected exception was caught, memory ran out, or a value holds a character that XML cannot hold."},
    {AllocationFailed, "AllocationFailed", u"An allocation failed."},
    {NotInitialised, "NotInitialised",
     u"The object is not initialised: no policy file is loaded, or no data is bound."},
    {ReadOnly, "ReadOnly", u"The policy file was opened read-only."},
    {CursorNotInitialised, "CursorNotInitialised", u"The section cursor is not initialised."},
    {BadArgument, "BadArgument", u"An argument is null, or the object lacks the expected interface."},
    {PlatformException, "PlatformException", u"A platform error was caught."},
    {ElementMissing, "ElementMissing", u"A required element is missing or has the wrong name."},
    {SyntaxError, "SyntaxError", u"The XML text could not be parsed."},
    {ListEmpty, "ListEmpty", u"The task list is empty."},
    {EndOfList, "EndOfList", u"The end of the task list is reached."},
    {RecordMissing, "RecordMissing", u"A record of the task list is missing."},
    {SectionNotFound, "SectionNotFound", u"There is no such section."},
    {SettingNotFound, "SettingNotFound", u"There is no such setting."},
    {NotCreated, "NotCreated", u"An element or attribute could not be created, or an index entry is empty."},
    {SectionStillMissing, "SectionStillMissing", u"The section is still missing after it was created."},
    {PolicyNotFound, "PolicyNotFound", u"There is no product policy with that software ID."},
    {TaskNotFound, "TaskNotFound", u"There is no task with that software ID and task ID."},
    {FileLocked, "FileLocked", u"Another process is editing the file."},
    {FileChanged, "FileChanged", u"The file was changed by something else since it was loaded, and is left alone."},
    {WrittenNotFlushed, "WrittenNotFlushed",
     u"The file is written, but a loss of power may bring the old one back: its folder was not flushed."},
    {OwnerNotKept, "OwnerNotKept",
     u"The file is left alone: a new one in its place could not have its owner and group."},
    {GeneralFailure, "GeneralFailure", u"The operation failed: the resource module or the INI file could not be used."},
    {OutOfMemory, "OutOfMemory", u"There is not enough memory."},
    {FileNotFound, "FileNotFound", u"The file does not exist."},
    {PathNotFound, "PathNotFound", u"The folder does not exist."},
    {TooManyOpenFiles, "TooManyOpenFiles", u"Too many files are open."},
    {AccessDenied, "AccessDenied", u"Access to the file is denied."},
    {WriteProtected, "WriteProtected", u"The file system is read-only."},
    {SharingViolation, "SharingViolation", u"The file is in use by another process."},
    {NotSupported, "NotSupported", u"This kind of file cannot be read."},
    {DiskFull, "DiskFull", u"The disk is full."},
    {InvalidName, "InvalidName", u"The file name is not valid."},
    {NameTooLong, "NameTooLong", u"The file name is too long."},
    {FileTooLarge, "FileTooLarge", u"The file is too large."},
    {NotValidInItsEncoding, "NotValidInItsEncoding",
     u"The text is not valid in its encoding, or the encoding cannot hold it."},
    {QuotaExceeded, "QuotaExceeded", u"The disk quota is exceeded."},
    {InputOutputError, "InputOutputError", u"Reading or writing the file failed."},
};

/// The sentence for a code; empty for a code that is not the component's own.
[[nodiscard]] constexpr std::u16string_view SentenceFor(Code code)
{
    for (const Meaning& row : kMeanings) {
        if (row.code == code) {
            return row.sentence;
        }
    }
    return {};
}

/// The name of a code, such as "PolicyNotFound"; empty for a code that is not the component's own.
[[nodiscard]] constexpr std::string_view NameFor(Code code)
{
    for (const Meaning& row : kMeanings) {
        if (row.code == code) {
            return row.name;
        }
    }
    return {};
}

}  // namespace zupm::result

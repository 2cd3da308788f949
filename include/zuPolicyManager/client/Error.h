/// Failures as exceptions: every failing call of the component's interfaces becomes a zupm::Error, or the class derived
/// from it that a caller is likely to handle.
///
///     exception    codes (Results.h)                    what happened
///     NotFound     PolicyNotFound, TaskNotFound,        the file or entry has nothing of that name
///                  SectionNotFound, SettingNotFound
///     Changed      FileChanged                          something else changed the file, which is left alone
///     Locked       FileLocked                           another editor had the file all the time
///     ReadOnly     ReadOnly                             the file was opened to be read only
///     NotFlushed   WrittenNotFlushed                    the file is written; a loss of power may undo it
///     SyntaxError  SyntaxError                          no well-formed XML: File(), Line(), Column()
///     InvalidText  NotValidInItsEncoding                a text that is no valid UTF-8 or UTF-16
///     FileError    the other codes of file operations   a file that cannot be read or written
///     Error        all others
///
/// Running out of memory gives std::bad_alloc on the client's side, and Error with OutOfMemory, AllocationFailed or
/// Unexpected on the component's.
#pragma once

#include <zuPolicyManager/Owners.h>
#include <zuPolicyManager/Results.h>
#include <zuPolicyManager/client/Utf.h>

#include <charconv>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

namespace zupm {

namespace client {

/// All that is known about a failed call; texts are UTF-8.
struct Failure {
    result::Code code = result::Unexpected;
    std::string subject;  ///< What the call was about: "policy.xml: policy PRODUCTA1000"; may be empty.
    std::string sentence;
    std::string file;
    std::uint32_t line = 0;
    std::uint32_t column = 0;
};

/// "subject: sentence [Name, 0xFFFFFB49]"; a place in a file comes first: "file:line:column: sentence [...]". One line
/// without control characters: names of the caller's and texts of a file cannot disturb a log or a terminal.
[[nodiscard]] inline std::string MessageOf(const Failure& failure)
{
    std::string message = failure.subject;
    if (failure.line != 0) {
        message = failure.file + ":" + std::to_string(failure.line) + ":" + std::to_string(failure.column);
    }
    const std::string_view name = result::NameFor(failure.code);
    message += message.empty() ? "" : ": ";
    message += failure.sentence + " [" + std::string(name.empty() ? "unknown code" : name) + ", 0x";
    for (unsigned int shift = 32; shift > 0; shift -= 4) {
        message += "0123456789ABCDEF"[(static_cast<std::uint32_t>(failure.code) >> (shift - 4)) & 0xFu];
    }
    return WithVisibleControls(message) + "]";
}

}  // namespace client

/// A call that failed. what() is one line for people: the subject, the sentence, the code's name and its number.
/// Control characters are written as \n, \x1B and so on there; the parts have them as they are.
///
/// Lifetime  A value; copies share their texts and copying never throws.
/// Threads   Like any exception: it may be read anywhere.
class Error : public std::runtime_error {
public:
    explicit Error(client::Failure failure)
        : std::runtime_error(client::MessageOf(failure)),
          m_failure(std::make_shared<const client::Failure>(std::move(failure)))
    {
    }

    /// The result code; constants are in Results.h.
    [[nodiscard]] result::Code Code() const noexcept { return m_failure->code; }
    /// The name of the code, such as "PolicyNotFound"; empty for a code that is not the component's own.
    [[nodiscard]] std::string_view Name() const noexcept { return result::NameFor(Code()); }
    /// The reason: the error information of the call without a place, or the sentence of the code.
    [[nodiscard]] const std::string& Sentence() const noexcept { return m_failure->sentence; }
    /// What the call was about, such as "policy.xml: policy PRODUCTA1000"; may be empty.
    [[nodiscard]] const std::string& Subject() const noexcept { return m_failure->subject; }
    /// The file that the call was about; empty when it was about none.
    [[nodiscard]] const std::string& File() const noexcept { return m_failure->file; }
    /// Line and column in that file, from 1; 0 when the failure has no place in the file. A column counts characters.
    [[nodiscard]] std::uint32_t Line() const noexcept { return m_failure->line; }
    [[nodiscard]] std::uint32_t Column() const noexcept { return m_failure->column; }

private:
    std::shared_ptr<const client::Failure> m_failure;
};

/// There is no such policy, task, section or setting.
class NotFound : public Error {
    using Error::Error;
};
/// Something else changed the file since it was loaded. Nothing was written.
class Changed : public Error {
    using Error::Error;
};
/// Another process or object was editing the file all the time that the call waited.
class Locked : public Error {
    using Error::Error;
};
/// The file was opened to be read only.
class ReadOnly : public Error {
    using Error::Error;
};
/// The file is written, but its folder could not be flushed: a loss of power may bring the old file back.
class NotFlushed : public Error {
    using Error::Error;
};
/// A text is no well-formed XML, or not of the kind that the component reads.
class SyntaxError : public Error {
    using Error::Error;
};
/// A text is not valid in its encoding: an argument, what the component hands out, or the bytes of a file.
class InvalidText : public Error {
    using Error::Error;
};
/// A file cannot be read or written.
class FileError : public Error {
    using Error::Error;
};

namespace client {

/// A description taken apart: the text of "file:line:column: reason".
struct Place {
    std::string_view file;
    std::uint32_t line = 0;
    std::uint32_t column = 0;
    std::string_view reason;
};

/// Takes ":number" off the front of a text; 0 when it does not begin with one that fits.
[[nodiscard]] inline std::uint32_t TakeNumber(std::string_view& text) noexcept
{
    std::uint32_t number = 0;
    if (text.size() < 2 || text.front() != ':') {
        return 0;
    }
    const auto [end, error] = std::from_chars(text.data() + 1, text.data() + text.size(), number);
    if (error != std::errc()) {
        return 0;
    }
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    return number;
}

/// Reads ":line:column: reason" from the colon at `colon` on; nothing when there is no such thing.
[[nodiscard]] inline std::optional<Place> PlaceAt(std::string_view description, std::size_t colon) noexcept
{
    constexpr std::string_view kMark = ": ";
    std::string_view rest = description.substr(colon);
    const std::uint32_t line = TakeNumber(rest);
    const std::uint32_t column = line == 0 ? 0 : TakeNumber(rest);
    if (column == 0 || rest.substr(0, kMark.size()) != kMark) {
        return std::nullopt;
    }
    return Place{description.substr(0, colon), line, column, rest.substr(kMark.size())};
}

/// Takes "file:line:column: reason" apart. A file's name may hold colons and even a place, so the name that the caller
/// knows decides where it ends. For another name the last place counts: no reason holds one.
[[nodiscard]] inline std::optional<Place> PlaceIn(std::string_view description, std::string_view knownFile) noexcept
{
    if (!knownFile.empty() && description.substr(0, knownFile.size()) == knownFile) {
        if (std::optional<Place> place = PlaceAt(description, knownFile.size())) {
            return place;
        }
    }
    for (std::size_t colon = description.rfind(':'); colon != description.npos && colon != 0;
         colon = description.rfind(':', colon - 1)) {
        if (std::optional<Place> place = PlaceAt(description, colon)) {
            return place;
        }
    }
    return std::nullopt;
}

/// Throws the class of exceptions that the code belongs to.
[[noreturn]] inline void Throw(const Failure& failure)
{
    switch (failure.code) {
        case result::PolicyNotFound:
        case result::TaskNotFound:
        case result::SectionNotFound:
        case result::SettingNotFound:
            throw NotFound(failure);
        case result::FileChanged:
            throw Changed(failure);
        case result::FileLocked:
            throw Locked(failure);
        case result::ReadOnly:
            throw ReadOnly(failure);
        case result::WrittenNotFlushed:
            throw NotFlushed(failure);
        case result::SyntaxError:
            throw SyntaxError(failure);
        case result::NotValidInItsEncoding:
            throw InvalidText(failure);
        case result::OutOfMemory:
            throw Error(failure);
        default:
            break;
    }
    // Codes of file operations carry the system's facility; the component's other codes never do.
    constexpr std::uint32_t kSystemFacility = 0x80070000u;
    if ((static_cast<std::uint32_t>(failure.code) & 0xFFFF0000u) == kSystemFacility) {
        throw FileError(failure);
    }
    throw Error(failure);
}

/// The sentence of a code, also of the few codes of the component runtime that a client meets.
[[nodiscard]] inline std::string SentenceOf(result::Code code)
{
    if (const std::u16string_view sentence = result::SentenceFor(code); !sentence.empty()) {
        return ToUtf8Lossy(sentence.data(), sentence.size());
    }
    switch (code) {
        case static_cast<result::Code>(REGDB_E_CLASSNOTREG):
            return "The component is not registered, and not linked into this program.";
        case static_cast<result::Code>(E_NOINTERFACE):
            return "The component is older than this call.";
        default:
            return "The call failed.";
    }
}

/// Throws for a code that leaves no error information: one of this header, of the runtime or of QueryInterface.
[[noreturn]] inline void ThrowCode(result::Code code, std::string subject, std::string file = {})
{
    Throw({code, std::move(subject), SentenceOf(code), std::move(file)});
}

/// The error information that the failed call left for this thread, as UTF-8; empty when it left none.
[[nodiscard]] inline std::string TakeDescription()
{
    ComPtr<IErrorInfo> info;
    Bstr description;
    if (GetErrorInfo(0, info.Put()) != S_OK || !info || info->GetDescription(description.Put()) < 0) {
        return {};
    }
    return ToUtf8Lossy(description.Get(), SysStringLen(description.Get()));
}

/// Throws for a failed call of the component. `description` is what TakeDescription gave.
[[noreturn]] inline void ThrowFailed(result::Code code, const std::string& description, std::string subject,
                                     std::string_view file)
{
    Failure failure{code, std::move(subject), description.empty() ? SentenceOf(code) : description, std::string(file)};
    const bool hasPlace = code == result::SyntaxError || code == result::NotValidInItsEncoding;
    if (const std::optional<Place> place = hasPlace ? PlaceIn(description, file) : std::nullopt) {
        failure.sentence = place->reason;
        failure.file = place->file;
        failure.line = place->line;
        failure.column = place->column;
    }
    Throw(failure);
}

}  // namespace client
}  // namespace zupm

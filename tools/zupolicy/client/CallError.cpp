#include "tools/zupolicy/client/CallError.h"

#include <zuPolicyManager/Results.h>

#include <cstdint>
#include <string_view>

#include "tools/zupolicy/client/Utf8.h"

namespace zupm::tool {
namespace {

ExitCode ExitCodeFor(result::Code code)
{
    switch (code) {
        case result::SectionNotFound:
        case result::SettingNotFound:
        case result::PolicyNotFound:
        case result::TaskNotFound:
            return ExitCode::NotFound;
        case result::OutOfMemory:
            return ExitCode::Other;
        case result::SyntaxError:
        case result::OwnerNotKept:
            return ExitCode::FileError;
        case result::FileChanged:
            return ExitCode::Changed;
        case result::FileLocked:
            return ExitCode::Locked;
        case result::WrittenNotFlushed:
            return ExitCode::Written;
        default:
            break;
    }
    // Codes of file operations carry the system's facility; the component's other codes never do.
    constexpr std::uint32_t kSystemFacility = 0x80070000u;
    const bool aboutFile = (static_cast<std::uint32_t>(code) & 0xFFFF0000u) == kSystemFacility;
    return aboutFile ? ExitCode::FileError : ExitCode::Other;
}

std::string Hex(result::Code code)
{
    constexpr char kDigits[] = "0123456789ABCDEF";
    std::string text = "0x";
    for (int shift = 28; shift >= 0; shift -= 4) {
        text.push_back(kDigits[(static_cast<std::uint32_t>(code) >> shift) & 0xFu]);
    }
    return text;
}

std::string MessageFor(result::Code code, const std::string& subject, const std::string& description)
{
    // The position of a syntax error begins with the file's name already; printing it twice would break
    // "file:line:column" for programs that jump to it.
    const bool hasSubject = description.rfind(subject + ":", 0) == 0;
    const std::string name(result::NameFor(code).empty() ? "unknown code" : result::NameFor(code));
    return (hasSubject ? description : subject + ": " + description) + " [" + name + ", " + Hex(code) + "]";
}

std::string DescriptionOf(const Error& error)
{
    if (error.Line() == 0) {
        return error.Sentence();
    }
    return error.File() + ":" + std::to_string(error.Line()) + ":" + std::to_string(error.Column()) + ": " +
           error.Sentence();
}

}  // namespace

CallError::CallError(result::Code code, const std::string& subject, const std::string& description)
    : Failure(ExitCodeFor(code), MessageFor(code, subject, description)), m_result(code), m_description(description)
{
}

CallError::CallError(const Error& error, const std::string& subject)
    : CallError(error.Code(), subject, DescriptionOf(error))
{
}

CallError::CallError(const CallError& other, const std::string& message)
    : Failure(other.Code(), message), m_result(other.m_result), m_description(other.m_description)
{
}

CallError CallError::With(const std::string& more) const
{
    return {*this, what() + more};
}

void Check(HRESULT result, const std::string& subject)
{
    const auto code = static_cast<result::Code>(result);
    if (code >= 0) {
        return;
    }
    const std::string description = client::TakeDescription();
    const std::u16string_view sentence = result::SentenceFor(code);
    const std::string otherwise = sentence.empty() ? "The call failed." : ToUtf8(sentence);
    throw CallError(code, subject, description.empty() ? otherwise : description);
}

}  // namespace zupm::tool

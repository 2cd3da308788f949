#include "tools/zupolicy/client/CallError.h"

#include <zuPolicyManager/Owners.h>
#include <zuPolicyManager/Results.h>

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

/// The sentence that the failed call left for this thread, or the sentence of its code.
std::string TakeDescription(result::Code code)
{
    ComPtr<IErrorInfo> info;
    Bstr description;
    if (GetErrorInfo(0, info.Put()) == S_OK && info && info->GetDescription(description.Put()) >= 0) {
        if (std::string text = ToUtf8(description.Text()); !text.empty()) {
            return text;
        }
    }
    const std::u16string_view sentence = result::SentenceFor(code);
    return sentence.empty() ? "The call failed." : ToUtf8(sentence);
}

}  // namespace

CallError::CallError(result::Code code, const std::string& subject, const std::string& description)
    : Failure(ExitCodeFor(code), MessageFor(code, subject, description)), m_result(code), m_description(description)
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

result::Code Check(HRESULT result, const std::string& subject)
{
    const auto code = static_cast<result::Code>(result);
    if (code < 0) {
        throw CallError(code, subject, TakeDescription(code));
    }
    return code;
}

}  // namespace zupm::tool

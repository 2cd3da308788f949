/// Failed calls of the component, as messages for people.
#pragma once

#include <zuPolicyManager/client/Error.h>

#include <string>

#include "tools/zupolicy/client/Failure.h"

namespace zupm::tool {

/// A call of the component that failed: "subject: sentence [Name, 0xFFFFFB49]".
class CallError : public Failure {
public:
    /// `description` is what the component says about the failure: a sentence, or "file:line:column: reason".
    CallError(result::Code code, const std::string& subject, const std::string& description);
    /// The failure of a call, about the tool's own subject.
    CallError(const Error& error, const std::string& subject);

    /// The same failure with more to its message.
    [[nodiscard]] CallError With(const std::string& more) const;

    [[nodiscard]] result::Code Result() const noexcept { return m_result; }
    /// The error information alone, as the component gave it.
    [[nodiscard]] const std::string& Description() const noexcept { return m_description; }

private:
    CallError(const CallError& other, const std::string& message);

    result::Code m_result;
    std::string m_description;
};

/// Throws CallError for a negative result of an interface, with the thread's error information.
void Check(HRESULT result, const std::string& subject);

/// Calls `call`; what the component refuses leaves it as a CallError. `subject` names what the call is about, such as
/// the file's name.
template <typename Call>
decltype(auto) Calling(const std::string& subject, const Call& call)
{
    try {
        return call();
    } catch (const Error& error) {
        throw CallError(error, subject);
    }
}

}  // namespace zupm::tool

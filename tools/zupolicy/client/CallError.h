/// Failed calls of the component, as messages for people.
#pragma once

#include <zuPolicyManager/zuPolicyManager.h>

#include <string>

#include "tools/zupolicy/client/Failure.h"

namespace zupm::tool {

/// A call of the component that failed: "subject: sentence [Name, 0xFFFFFB49]".
class CallError : public Failure {
public:
    /// `description` is the thread's error information for the call.
    CallError(result::Code code, const std::string& subject, const std::string& description);

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

/// Throws CallError for a negative result, with the thread's error information; returns the result otherwise.
/// `subject` names what the call was about, such as the file's name.
result::Code Check(HRESULT result, const std::string& subject);

}  // namespace zupm::tool

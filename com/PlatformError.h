/// A failing platform call, as an exception.
#pragma once

#include <exception>
#include <string>
#include <utility>

#include "zuPolicyManager/Results.h"

namespace zupm {

/// Carries the platform's code and a description.
class PlatformError : public std::exception {
public:
    PlatformError(result::Code code, std::u16string description) : m_code(code), m_description(std::move(description))
    {
    }

    [[nodiscard]] result::Code GetCode() const noexcept { return m_code; }
    [[nodiscard]] const std::u16string& GetDescription() const noexcept { return m_description; }
    [[nodiscard]] const char* what() const noexcept override { return "platform error"; }

private:
    result::Code m_code;
    std::u16string m_description;
};

}  // namespace zupm

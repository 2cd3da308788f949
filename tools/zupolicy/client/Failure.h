/// What ends a command early.
#pragma once

#include <stdexcept>
#include <string>

#include "tools/zupolicy/client/ExitCode.h"

namespace zupm::tool {

/// A failure that ends the command: one line for the administrator, and the exit code.
class Failure : public std::runtime_error {
public:
    Failure(ExitCode code, const std::string& message) : std::runtime_error(message), m_code(code) {}

    [[nodiscard]] ExitCode Code() const noexcept { return m_code; }

private:
    ExitCode m_code;
};

}  // namespace zupm::tool

/// What a command reads besides policy files.
#pragma once

#include <string>

namespace zupm::tool {

/// All bytes of a file, or of standard input for "-". `what` names them in the message: "the entry". Throws Failure
/// (FileError).
[[nodiscard]] std::string ReadInput(const std::string& name, const std::string& what);

/// A value for a setting: the text of a file, or of standard input for "-", without a signature of UTF-8 and without
/// the last line break. Throws Failure (FileError), also for a null character and for what is not valid UTF-8.
[[nodiscard]] std::string ReadValue(const std::string& name);

}  // namespace zupm::tool

/// The texts of policy files, for differences between them.
#pragma once

#include <zuPolicyManager/client/PolicyFile.h>

#include <string>

namespace zupm::tool {

/// The UTF-8 of a policy file's bytes; bytes that are in no known encoding stay as they are.
[[nodiscard]] std::string TextOf(std::string bytes);

/// The text of a file on the disk. Throws Failure (FileError).
[[nodiscard]] std::string TextOfFile(const std::string& path);

/// The text that a file would have if the document was written now. Throws Error, std::system_error.
[[nodiscard]] std::string TextOfDocument(const zupm::PolicyFile& file);

}  // namespace zupm::tool

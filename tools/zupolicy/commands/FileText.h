/// The texts of policy files, for differences between them.
#pragma once

#include <zuPolicyManager/client/PolicyFile.h>

#include <string>
#include <vector>

#include "tools/zupolicy/report/Redaction.h"
#include "tools/zupolicy/report/UnifiedDiff.h"

namespace zupm::tool {

/// A text, and what of it must not be shown.
struct FileText {
    std::string text;
    std::vector<TextPart> hidden;

    void HideAll() { hidden = {{0, text.size()}}; }
};

/// The UTF-8 of a policy file's bytes. Bytes that are in no known encoding stay as they are; all of them are hidden
/// when a value is to be hidden.
[[nodiscard]] FileText TextOf(std::string bytes, const Redaction& redaction);

/// The text of a file on the disk. Throws Failure (FileError).
[[nodiscard]] FileText TextOfFile(const std::string& path, const Redaction& redaction);

/// The text that a file would have if the document was written now. Throws Error, std::system_error.
[[nodiscard]] FileText TextOfDocument(const zupm::PolicyFile& file, const Redaction& redaction);

/// The unified difference between the texts of a file, which is written to `newName`.
[[nodiscard]] std::string Difference(const std::string& oldName, const std::string& newName, FileText before,
                                     FileText after, Form form);

}  // namespace zupm::tool

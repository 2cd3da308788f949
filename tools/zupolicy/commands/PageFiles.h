/// Policy files on their way into a page.
#pragma once

#include <zuPolicyManager/Client.h>

#include <string>

#include "tools/zupolicy/report/PageData.h"
#include "tools/zupolicy/rules/RuleSet.h"

namespace zupm::tool {

/// What a page shows of a file that is loaded: what callers of the component find, without what only repeats fields of
/// tasks; and what is odd about it. Throws Error.
[[nodiscard]] PageFile ReadForPage(const std::string& name, const zupm::PolicyFile& file);

/// The same for the file at a path, with what breaks a rule; `rules` may be null. A failure is part of the result. Call
/// it on a thread with a Runtime.
[[nodiscard]] PageFile ReadForPage(const std::string& path, const rules::RuleSet* rules, const Redaction& redaction);

/// Writes the page to standard output (`output` is "-"), or in one step to a file. Throws Failure (FileError).
void WritePageTo(const std::string& output, const PageData& data, const PageHead& head, std::ostream& standardOutput);

/// Throws Failure (Usage) when the page would replace a file that it is about.
void RequireOtherFile(const std::string& output, const std::vector<std::string>& files);

}  // namespace zupm::tool

/// What the commands print with --json: one document a run, UTF-8, indented, with a line break at the end.
#pragma once

#include <string>
#include <vector>

#include "model/Change.h"
#include "model/CheckReport.h"
#include "model/FileContents.h"
#include "model/Target.h"

namespace zupm::tool {

/// Versions are texts: they need 64 bits, which many readers of JSON do not have.
[[nodiscard]] std::string ContentsAsJson(const std::string& file, const FileContents& contents, bool withSections);
[[nodiscard]] std::string ValueAsJson(const Target& target, const std::string& section, const Setting& setting);
[[nodiscard]] std::string ChangeAsJson(const Change& change);
[[nodiscard]] std::string ReportsAsJson(const std::vector<CheckReport>& reports);

}  // namespace zupm::tool

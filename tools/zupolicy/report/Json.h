/// What the commands print with --json: one document a run, UTF-8, indented, with a line break at the end.
#pragma once

#include <functional>
#include <iosfwd>
#include <string>

#include "tools/zupolicy/client/Target.h"
#include "tools/zupolicy/client/contents/FileContents.h"
#include "tools/zupolicy/report/Change.h"
#include "tools/zupolicy/report/CheckReport.h"
#include "tools/zupolicy/report/JsonWriter.h"
#include "tools/zupolicy/report/ShowText.h"

namespace zupm::tool {

/// Versions are texts: they need 64 bits, which many readers of JSON do not have.
void WriteContentsAsJson(std::ostream& out, const std::string& file, const FileContents& contents,
                         const Selection& selection);
void WriteValueAsJson(std::ostream& out, const Target& target, const std::string& section, const std::string& name,
                      const std::string& value);
void WriteChangeAsJson(std::ostream& out, const Change& change, const Redaction& redaction);
/// A task that was written into an INI file. `forEachLoss` calls its argument for what is lost of it there.
void WriteExportAsJson(std::ostream& out, const Target& task, const std::string& written,
                       const std::function<void(const std::function<void(const Notice&)>&)>& forEachLoss);
/// One item of the list that `check` prints.
void WriteReportAsJson(JsonWriter& json, const CheckReport& report);

}  // namespace zupm::tool

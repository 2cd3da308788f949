/// Differences between policy files: as lines for people, and as edits that `apply` reads.
#pragma once

#include <iosfwd>
#include <string>
#include <string_view>

#include "tools/zupolicy/model/Change.h"
#include "tools/zupolicy/report/JsonWriter.h"

namespace zupm::tool {

/// Something of the whole file that differs, and that no interface can change.
struct FileDifference {
    std::string_view what;  ///< "assignmentList", "policyVersion", "taskVersion"
    std::string before;
    std::string after;
};

/// Lines such as `~ policy PRODUCTA1000 General/ScanInterval: "60" -> "15"`, each with a line break.
void WriteAsText(std::ostream& out, const FileDifference& difference);
void WriteAsText(std::ostream& out, const model::EntryChange& change);

/// Edits, each a JSON object that begins with "schema" and "edit".
void WriteAsEdit(JsonWriter& json, const FileDifference& difference);
void WriteAsEdits(JsonWriter& json, const model::EntryChange& change);

}  // namespace zupm::tool

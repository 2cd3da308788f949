/// Differences between policy files: as lines for people, and as edits that `apply` reads.
#pragma once

#include <functional>
#include <iosfwd>
#include <string>
#include <string_view>

#include "tools/zupolicy/model/Change.h"
#include "tools/zupolicy/report/JsonWriter.h"
#include "tools/zupolicy/report/Redaction.h"

namespace zupm::tool {

/// Something of the whole file that differs, and that no interface can change.
struct FileDifference {
    std::string_view what;  ///< "assignmentList", "policyVersion", "taskVersion"
    std::string before;
    std::string after;
};

/// How differences are written.
struct ChangeStyle {
    Redaction redaction;
    std::string linePrefix;                         ///< of each line of text
    std::function<void(JsonWriter&)> writeMembers;  ///< of each edit, after "schema"
};

/// Lines such as `~ policy PRODUCTA1000 General/ScanInterval: "60" -> "15"`, each with a line break.
void WriteAsText(std::ostream& out, const FileDifference& difference, const ChangeStyle& style = {});
void WriteAsText(std::ostream& out, const model::EntryChange& change, const ChangeStyle& style = {});

/// Edits, each a JSON object that begins with "schema" and "edit". One with a hidden value ends with "redacted", which
/// `apply` refuses.
void WriteAsEdit(JsonWriter& json, const FileDifference& difference, const ChangeStyle& style = {});
void WriteAsEdits(JsonWriter& json, const model::EntryChange& change, const ChangeStyle& style = {});
/// An entry that only the new file has, and that no edit can create; `reason` is a sentence.
void WriteAsUnsupported(JsonWriter& json, const model::EntryId& id, std::string_view reason);

}  // namespace zupm::tool

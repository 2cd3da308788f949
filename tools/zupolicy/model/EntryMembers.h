/// What edits and entries as JSON have in common.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "tools/zupolicy/model/EditMembers.h"
#include "tools/zupolicy/model/EditRequest.h"

namespace zupm::model {

// Each throws JsonComplaint.

/// The member "schema" may be missing, and must be 1 otherwise.
void RequireSchema(Members& members);
void ReadId(Members& members, EditRequest& edit);
/// Reads the fields of a task that exist; returns whether there is one.
bool ReadFields(Members& members, EditRequest& edit);
/// IDs, the fields of a task, and sections with their settings.
void ReadContent(Members& members, EditRequest& edit);
/// The parser takes a null character for the end of its text.
void RequireNoNull(std::string_view text);

/// The column of a byte of a line: one more than the number of characters before it.
[[nodiscard]] std::uint32_t ColumnOf(std::string_view line, std::size_t at);

}  // namespace zupm::model

/// Edits written as JSON, one object a line.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "tools/zupolicy/model/EditRequest.h"

namespace zupm::model {

/// What is wrong with a text of edits, and where.
struct EditsComplaint {
    EditPlace place;
    std::string message;
};

/// Reads all edits; blank lines are passed over. Refused are, besides what is not JSON, a member that no edit or not
/// this edit has, a member that is missing or of another type, and a text that XML cannot hold. Throws EditsComplaint.
[[nodiscard]] std::vector<EditRequest> ReadEdits(std::string_view text);

}  // namespace zupm::model

/// A page of HTML about policy files.
#pragma once

#include <iosfwd>

#include "tools/zupolicy/report/PageData.h"

namespace zupm::tool {

/// Writes one document with everything in it. It loads nothing, and no text of a file can run in it: the data is not
/// script, and the page's security policy runs only the page's own script.
void WritePage(std::ostream& out, const PageData& data, const PageHead& head);

}  // namespace zupm::tool

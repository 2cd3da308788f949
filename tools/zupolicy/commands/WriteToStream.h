/// A policy file on its way through a pipe.
#pragma once

#include <iosfwd>

#include "tools/zupolicy/client/PolicyFile.h"

namespace zupm::tool {

/// Writes the document to a stream: the bytes that a file would get, in the document's own encoding.
void WriteToStream(PolicyFile& file, std::ostream& out);

}  // namespace zupm::tool

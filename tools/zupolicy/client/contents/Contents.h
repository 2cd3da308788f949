/// What a policy file holds, read through the component and then record by record.
#pragma once

#include <string>

#include "tools/zupolicy/client/contents/FileContents.h"

namespace zupm::tool {

/// The contents of the file at a UTF-8 path. The component loads the file first and decides whether it can be; its
/// document is gone before the records are made, so both are never in memory together. Throws CallError when the
/// component refuses the file, Failure (Changed) when another program writes it at the same time.
[[nodiscard]] FileContents ReadContents(const std::string& path);

/// The same records of a file that the component has accepted already; versions and assignment list stay empty. Throws
/// Failure (FileError), and Failure (Changed) when the file is no such file any more.
[[nodiscard]] FileContents ReadRecords(const std::string& path);

}  // namespace zupm::tool

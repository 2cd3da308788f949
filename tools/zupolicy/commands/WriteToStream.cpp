#include "tools/zupolicy/commands/WriteToStream.h"

#include <ostream>
#include <string>

#include "tools/zupolicy/client/CopyFile.h"
#include "tools/zupolicy/client/TemporaryFolder.h"
#include "tools/zupolicy/client/Utf8.h"

namespace zupm::tool {

// The component writes files only, so a file in a private folder takes the bytes first.
void WriteToStream(PolicyFile& file, std::ostream& out)
{
    const TemporaryFolder folder;
    const std::string path = ToUtf8((folder.Path() / "document.xml").u16string());
    file.Write(path);
    CopyFile(folder.Path() / "document.xml", out);
}

}  // namespace zupm::tool

#include "tools/zupolicy/commands/FileText.h"

#include <optional>
#include <utility>

#include "tools/zupolicy/client/Files.h"
#include "tools/zupolicy/client/Utf8.h"
#include "tools/zupolicy/client/contents/SourceBytes.h"
#include "tools/zupolicy/client/contents/SourceText.h"

namespace zupm::tool {

std::string TextOf(std::string bytes)
{
    std::optional<std::string> text = DecodeSource(bytes);
    return text ? *std::move(text) : std::move(bytes);
}

std::string TextOfFile(const std::string& path)
{
    return TextOf(ReadBytes(path));
}

/// The component writes files only, and it brings the version attributes up to date when it writes.
std::string TextOfDocument(const zupm::PolicyFile& file)
{
    const TemporaryFolder folder;
    const std::string path = ToUtf8((folder.Path() / "document.xml").u16string());
    file.SaveAs(path);
    return TextOfFile(path);
}

}  // namespace zupm::tool

#include "tools/zupolicy/commands/FileText.h"

#include <optional>
#include <utility>

#include "tools/zupolicy/client/Files.h"
#include "tools/zupolicy/client/Utf8.h"
#include "tools/zupolicy/client/contents/SourceBytes.h"
#include "tools/zupolicy/client/contents/SourceText.h"

namespace zupm::tool {

FileText TextOf(std::string bytes, const Redaction& redaction)
{
    if (std::optional<std::string> text = DecodeSource(bytes)) {
        std::vector<TextPart> hidden = HiddenParts(redaction, *text);
        return {*std::move(text), std::move(hidden)};
    }
    FileText unknown{std::move(bytes), {}};
    if (!redaction.IsEmpty()) {
        unknown.HideAll();
    }
    return unknown;
}

FileText TextOfFile(const std::string& path, const Redaction& redaction)
{
    return TextOf(ReadBytes(path), redaction);
}

/// The component writes files only, and it brings the version attributes up to date when it writes.
FileText TextOfDocument(const zupm::PolicyFile& file, const Redaction& redaction)
{
    const TemporaryFolder folder;
    const std::string path = ToUtf8((folder.Path() / "document.xml").u16string());
    file.SaveAs(path);
    return TextOfFile(path, redaction);
}

std::string Difference(const std::string& oldName, const std::string& newName, FileText before, FileText after,
                       Form form)
{
    return UnifiedDiff({oldName, newName, before.text, after.text, std::move(before.hidden), std::move(after.hidden)},
                       form);
}

}  // namespace zupm::tool

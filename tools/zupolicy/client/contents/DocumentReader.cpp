#include "tools/zupolicy/client/contents/DocumentReader.h"

#include "tools/zupolicy/client/contents/ContentsBuilder.h"
#include "tools/zupolicy/client/contents/TagReader.h"

namespace zupm::tool {

std::optional<FileContents> ReadDocument(std::string_view text)
{
    TagReader reader(text);
    ContentsBuilder builder(text);
    while (const std::optional<Markup> markup = reader.Next()) {
        builder.Add(*markup);
    }
    return reader.IsBroken() ? std::nullopt : std::optional(builder.Take());
}

}  // namespace zupm::tool

#include "xml/DocumentReader.h"

#include "xml/ContentsBuilder.h"
#include "xml/TagReader.h"

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

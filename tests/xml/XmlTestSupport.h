/// What the document library's tests share.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "text/Utf.h"
#include "xml/Document.h"
#include "xml/Exceptions.h"
#include "xml/Node.h"
#include "xml/Parser.h"
#include "xml/UtfEncodings.h"
#include "xml/XmlText.h"

namespace AdvXMLParser {

inline std::unique_ptr<Document> Parsed(std::string_view text, std::optional<UTF_ENCODINGS> encoding = std::nullopt)
{
    return Parser().Parse(XmlText(std::string(text), encoding));
}

inline std::string TextOf(const Document& document)
{
    return std::move(document.GenerateXML(false)).TakeUtf8();
}

/// The text of a document after `edit(root)`.
template <class Edit>
std::string Edited(std::string_view text, Edit edit)
{
    const std::unique_ptr<Document> document = Parsed(text);
    edit(document->GetRoot());
    return TextOf(*document);
}

inline Element FirstChild(const NodeContainer& parent)
{
    return *parent.Begin();
}

/// The child of that position, counted from 0.
inline Element Child(const NodeContainer& parent, int position)
{
    ElementIterator at = parent.Begin();
    while (position-- > 0) {
        ++at;
    }
    return *at;
}

inline std::string Narrow(std::u16string_view text)
{
    return zupm::ToUtf8Lossy(text);
}

/// The refusal of a text as "line:column: reason"; "accepted" when it is none.
inline std::string Refusal(XmlText text)
{
    const auto place = [](const auto& failure) {
        return std::to_string(failure.GetLine()) + ":" + std::to_string(failure.GetColumn()) + ": ";
    };
    try {
        (void)Parser().Parse(std::move(text));
        return "accepted";
    } catch (const ParsingException& failure) {
        return place(failure) + failure.GetReason();
    } catch (const InvalidTextException& failure) {
        return place(failure) + "not valid in its encoding";
    }
}

inline std::string Refusal(std::string_view text, std::optional<UTF_ENCODINGS> encoding = std::nullopt)
{
    return Refusal(XmlText(std::string(text), encoding));
}

}  // namespace AdvXMLParser

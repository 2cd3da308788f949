#include "fuzz/support/LibraryLoad.h"

#include <optional>
#include <utility>

#include "fuzz/support/Demand.h"
#include "xml/BuildTree.h"
#include "xml/Encoding.h"
#include "xml/Exceptions.h"
#include "xml/XmlText.h"

namespace zupm::fuzz {

using AdvXMLParser::Document;
using AdvXMLParser::ParsingException;
using AdvXMLParser::SpanTree;
using AdvXMLParser::XmlText;

namespace {

/// What becomes of a tree that `build` builds.
template <class Build>
LibraryLoad Load(std::optional<AdvXMLParser::UTF_ENCODINGS> encoding, Build build)
{
    LibraryLoad load;
    load.encoding = encoding.value_or(AdvXMLParser::UTF_ENCODINGS::Utf8);
    try {
        std::unique_ptr<SpanTree> tree = build();
        load.tree = tree.get();
        load.document = std::make_unique<Document>(std::move(tree));
    } catch (const ParsingException& refusal) {
        load.code = result::SyntaxError;
        load.refusal = std::to_string(refusal.GetLine()) + ":" + std::to_string(refusal.GetColumn()) + ": " +
                       std::string(refusal.GetReason());
        Demand(refusal.GetLine() > 0 && refusal.GetColumn() > 0, "a refusal has a place");
        Demand(!refusal.GetReason().empty(), "a refusal has a reason");
    }
    return load;
}

}  // namespace

LibraryLoad LoadText(std::string text, std::optional<AdvXMLParser::UTF_ENCODINGS> encoding)
{
    return Load(encoding, [&] { return AdvXMLParser::BuildTree(XmlText(std::move(text), encoding)); });
}

LibraryLoad LoadByGate(std::string text, std::optional<AdvXMLParser::UTF_ENCODINGS> encoding,
                       const AdvXMLParser::WindowLimits& limits)
{
    return Load(encoding, [&] {
        AdvXMLParser::RecordStore records = AdvXMLParser::ExpatGate(text, encoding, limits).ReadRest();
        return std::make_unique<SpanTree>(std::move(text), std::move(records));
    });
}

LibraryLoad LoadFromMemory(std::string_view bytes)
{
    const AdvXMLParser::UTF_ENCODINGS encoding = AdvXMLParser::DetectEncoding(bytes);
    const bool isValid = AdvXMLParser::Decode(std::string(bytes), encoding).has_value();
    try {
        std::optional<XmlText> text = AdvXMLParser::DecodeUnchecked(std::string(bytes), encoding);
        if (text) {
            LibraryLoad load = Load(encoding, [&] { return AdvXMLParser::BuildTree(std::move(*text)); });
            Demand(isValid, "bytes that are not valid are not parsed");
            return load;
        }
    } catch (const AdvXMLParser::InvalidTextException&) {
        Demand(!isValid, "only bytes that are not valid are refused as such");
    }
    LibraryLoad load;
    load.encoding = encoding;
    load.code = result::NotValidInItsEncoding;
    return load;
}

std::string BytesOf(const LibraryLoad& load)
{
    const std::optional<std::string> bytes =
        AdvXMLParser::Encode(load.document->GenerateXML(false).Utf8(), load.encoding, true);
    Demand(bytes.has_value(), "what was read in an encoding can be written in it");
    return *bytes;
}

}  // namespace zupm::fuzz

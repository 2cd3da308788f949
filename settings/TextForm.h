/// Loading a product or task from XML text.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "settings/ParseFailure.h"
#include "settings/Schema.h"
#include "xml/Document.h"
#include "xml/Parser.h"

namespace zupm {

/// Passes the root element of `xml` to `load` and returns its code; the document is freed after that. AllocationFailed
/// without a document. SyntaxError, logged under `operation` ("CClass::Initialize()"), with "text:line:column: reason"
/// in `detail`.
template <class Load>
[[nodiscard]] result::Code LoadFromText(std::u16string_view operation, std::u16string_view xml, std::u16string& detail,
                                        Load load)
{
    try {
        const std::unique_ptr<AdvXMLParser::Document> document =
            AdvXMLParser::Parser().Parse(xml.data(), xml.size(), schema::kLevelsOfText);
        return document ? load(document->GetRoot()) : result::AllocationFailed;
    } catch (const AdvXMLParser::ParsingException& error) {
        return ReportParseFailure(operation, kTextSource, error, detail);
    }
}

}  // namespace zupm

/// Two readings of one document.
#pragma once

#include "fuzz/support/PeerDocument.h"
#include "xml/Document.h"
#include "xml/SpanTree.h"

namespace zupm::fuzz {

/// Demands that a document has the peer's elements in the peer's order, with the same names, attributes and texts.
/// `tree` is the document's own.
void DemandSameElements(const AdvXMLParser::Document& document, const AdvXMLParser::SpanTree& tree,
                        const PeerDocument& peer);

}  // namespace zupm::fuzz

/// An XML document that keeps every byte that nobody edits.
#pragma once

#include <memory>
#include <string_view>

#include "xml/Node.h"
#include "xml/TextRuns.h"
#include "xml/TextSnapshot.h"
#include "xml/XmlText.h"

namespace AdvXMLParser {

class SpanTree;

/// A document: owns its text and its elements.
///
/// Lifetime  Handles are valid while it lives.
/// Threads   None of its own; see Node.
class Document {
public:
    /// A new document: one empty root element of that name, without a declaration and without line breaks.
    explicit Document(std::u16string_view rootName);
    /// A document over a tree that a parser built.
    explicit Document(std::unique_ptr<SpanTree> tree) noexcept;
    ~Document();
    Document(const Document&) = delete;
    Document& operator=(const Document&) = delete;

    [[nodiscard]] Element GetRoot() const noexcept;

    /// The whole text as it is now. `reformat` must be false: this library never reformats a text.
    [[nodiscard]] XmlText GenerateXML(bool reformat) const;

    /// The same in pieces, which lie in the document.
    [[nodiscard]] TextRuns Runs() const;

    /// The text as it is now, unchanged by later edits.
    [[nodiscard]] TextSnapshot Snapshot() const;

private:
    std::unique_ptr<SpanTree> m_tree;
};

}  // namespace AdvXMLParser

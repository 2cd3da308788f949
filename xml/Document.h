/// An XML document that keeps every byte which nobody edits.
#pragma once

#include <memory>
#include <string_view>

#include "xml/Node.h"
#include "xml/XmlText.h"

namespace AdvXMLParser {

class SpanTree;

/// A document: owns its text and its elements.
///
/// Lifetime  Handles are valid while it lives.
/// Threads   None of its own; see Node.
class Document {
public:
    /// A new document: one empty root element of that name, no declaration, no line breaks.
    explicit Document(std::u16string_view rootName);
    /// Over a tree that a parser built.
    explicit Document(std::unique_ptr<SpanTree> tree) noexcept;
    ~Document();
    Document(const Document&) = delete;
    Document& operator=(const Document&) = delete;

    [[nodiscard]] Element GetRoot() const noexcept;

    /// The whole text as it stands. `reformat` must be false: this library never changes the form of a text.
    [[nodiscard]] XmlText GenerateXML(bool reformat) const;

private:
    std::unique_ptr<SpanTree> m_tree;
};

}  // namespace AdvXMLParser

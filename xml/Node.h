/// Handles to the elements and attributes of a document.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace AdvXMLParser {

class Document;
class SpanTree;
struct AttributeSpan;

/// A handle to an element: small, copied freely, owning nothing.
///
/// Lifetime  Valid while its document lives. A handle to an element that was deleted is null for ever.
/// Threads   None of its own: one thread at a time may use a document, or several when all only read.
/// Errors    Reading from a null handle gives nulls and empty texts, editing through one does nothing. Edits throw
///           std::bad_alloc, InvalidCharacterException or DocumentTooLargeException and then have changed nothing.
class Node {
public:
    Node() = default;

    [[nodiscard]] bool IsNull() const noexcept;

    /// The element's name as the text has it, prefix included.
    [[nodiscard]] std::u16string GetName() const;
    [[nodiscard]] bool NameIs(std::u16string_view name) const noexcept;

    /// Removes the element with everything in it, and its line when nothing else is on it. The document element cannot
    /// be removed.
    void Delete();

    friend bool operator==(const Node&, const Node&) = default;

protected:
    friend class Attribute;
    friend class Document;
    friend class ElementIterator;
    friend class NodeContainer;
    Node(SpanTree* tree, std::uint32_t index, std::uint32_t generation) noexcept
        : m_tree(tree), m_index(index), m_generation(generation)
    {
    }

    SpanTree* m_tree = nullptr;
    std::uint32_t m_index = 0;
    std::uint32_t m_generation = 0;
};

class Attribute;
class Element;
class ElementIterator;

/// Names a subtree to copy. NodeContainer::Add makes the copy, straight into its new document.
struct ElementClone {
    const Element* source;
};

/// What an element holds: child elements and text.
class NodeContainer : public Node {
public:
    using Node::Node;

    /// Child elements in document order. Everything else (text, comments, processing instructions) is skipped. Deleting
    /// the element that an iterator is at ends that iteration.
    [[nodiscard]] ElementIterator Begin() const noexcept;
    [[nodiscard]] ElementIterator End() const noexcept;

    /// The number of child elements, or `most` when there are more.
    [[nodiscard]] std::size_t CountChildren(std::size_t most) const noexcept;

    /// Appends a copy of a subtree as the last child and returns it. It gets a line like its siblings; a subtree on one
    /// line is laid out like them. Everything else in the copy is the same, byte for byte.
    Element Add(const ElementClone& clone);  // NOLINT(modernize-use-nodiscard): callers often need the effect alone

    /// Appends a new empty element, placed like its siblings.
    Element AddElementInto(std::u16string_view name);
    /// The same with one attribute and a text; all of it happens or nothing.
    Element AddElementInto(std::u16string_view name, std::u16string_view attribute, std::u16string_view value,
                           std::u16string_view text = {});

    /// The decoded character data directly inside, CDATA included, without comments and child elements.
    [[nodiscard]] std::u16string GetText() const;

    /// Appends character data after the last child.
    void AddText(std::u16string_view text);

    /// Removes everything inside: elements, text, comments.
    void DeleteChildren();

    /// DeleteChildren and AddText; both happen or neither. Changes no byte when the content is this text already.
    void SetText(std::u16string_view text);
};

/// An element of a document.
class Element : public NodeContainer {
public:
    using NodeContainer::NodeContainer;

    /// The attribute of that name, or a null one.
    [[nodiscard]] Attribute GetAttribute(std::u16string_view name) const;
    /// Replaces `text` by what GetAttribute(name).GetText() gives. Without that attribute it is untouched, and the
    /// result is false. Reads the start tag once and uses the memory of `text` again. Throws std::bad_alloc.
    [[nodiscard]] bool ReadAttribute(std::u16string_view name, std::u16string& text) const;
    /// The same for two attributes; the result says whether it has both, and each text is replaced on its own. Names
    /// that are asked for in the order of the tag cost no second reading.
    [[nodiscard]] bool ReadAttributes(std::u16string_view name, std::u16string& text, std::u16string_view laterName,
                                      std::u16string& laterText) const;
    /// Appends an attribute with that value and returns it; all of it happens or nothing. An attribute of that name
    /// that exists already is returned unchanged.
    Attribute CreateAttribute(std::u16string_view name, std::u16string_view value = {});

    /// AddElementInto under another name, for an element that becomes the only child.
    Element CreateElement(std::u16string_view name) { return AddElementInto(name); }

    [[nodiscard]] ElementClone Clone() const noexcept { return ElementClone{this}; }

    /// The element with everything in it as UTF-8, from its start tag to its end tag. Throws std::bad_alloc.
    [[nodiscard]] std::string GetXml() const;
};

/// A handle to an attribute: its element and its name. Null while the element has no attribute of that name.
class Attribute {
public:
    Attribute() = default;

    [[nodiscard]] bool IsNull() const noexcept;
    [[nodiscard]] std::u16string GetName() const;
    /// The decoded value with white space normalised as XML requires; empty when null.
    [[nodiscard]] std::u16string GetText() const;
    /// Whether the decoded value is exactly this text; false when null.
    [[nodiscard]] bool TextIs(std::u16string_view text) const;
    void DeleteChildren();
    void AddText(std::u16string_view text);
    /// DeleteChildren and AddText; both happen or neither. Changes no byte when the value is this text already.
    void SetText(std::u16string_view text);

private:
    friend class Element;
    Attribute(const Element& element, std::string name);
    [[nodiscard]] std::optional<AttributeSpan> Find() const noexcept;

    Element m_element;
    std::string m_name;  ///< UTF-8
};

/// Walks through child elements; the end refers to the null element.
class ElementIterator {
public:
    ElementIterator() = default;

    [[nodiscard]] Element operator*() const noexcept { return m_element; }
    ElementIterator& operator++() noexcept;
    friend bool operator==(const ElementIterator&, const ElementIterator&) = default;

private:
    friend class NodeContainer;
    explicit ElementIterator(const Element& element) noexcept : m_element(element) {}

    Element m_element;
};

/// For range loops: `for (Element child : ElementChildren(parent))`.
class ElementChildren {
public:
    explicit ElementChildren(const NodeContainer& parent) noexcept : m_parent(parent) {}
    [[nodiscard]] ElementIterator begin() const noexcept { return m_parent.Begin(); }
    [[nodiscard]] ElementIterator end() const noexcept { return m_parent.End(); }

private:
    NodeContainer m_parent;
};

/// Sets an attribute; creates it when it is missing.
void SetAttribute(Element element, std::u16string_view name, std::u16string_view text);

}  // namespace AdvXMLParser

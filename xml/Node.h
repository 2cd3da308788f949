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
/// Lifetime  Valid while its document lives. A handle to an element that was deleted reads as null, for ever.
/// Threads   None of its own: one thread at a time may use a document, or several when all only read.
/// Errors    Reading from a null handle gives nulls and empty texts, editing through one does nothing. Edits throw
///           std::bad_alloc, InvalidCharacterException or DocumentTooLargeException and then have changed nothing.
class Node {
public:
    Node() = default;

    [[nodiscard]] bool IsNull() const noexcept;

    /// The element's name as it stands in the text, prefix included.
    [[nodiscard]] std::u16string GetName() const;
    [[nodiscard]] bool NameIs(std::u16string_view name) const noexcept;

    /// Removes the element with everything in it, and the line that it alone stood on. The document element cannot be
    /// removed.
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

/// Names a subtree to be copied; the copy is made by NodeContainer::Add, straight into its new document.
struct ElementClone {
    const Element* source;
};

/// What an element holds: child elements and text.
class NodeContainer : public Node {
public:
    using Node::Node;

    /// Child elements in document order. Everything that is no element (text, comments, processing instructions) is
    /// passed over. Deleting the element that an iterator is at ends that iteration.
    [[nodiscard]] ElementIterator Begin() const noexcept;
    [[nodiscard]] ElementIterator End() const noexcept;

    /// Appends a copy of a subtree as the last child and returns it; the subtree's own text is copied byte for byte.
    /// Its place follows the siblings' line break and indentation, and a subtree on one line is laid out like them.
    Element Add(const ElementClone& clone);  // NOLINT(modernize-use-nodiscard): callers often need the effect alone

    /// Appends a new empty element, placed like its siblings.
    Element AddElementInto(std::u16string_view name);
    /// The same with one attribute and a text, in one step that fails whole.
    Element AddElementInto(std::u16string_view name, std::u16string_view attribute, std::u16string_view value,
                           std::u16string_view text = {});

    /// The character data directly inside, decoded; CDATA included, comments and child elements left out.
    [[nodiscard]] std::u16string GetText() const;

    /// Appends character data.
    void AddText(std::u16string_view text);

    /// Removes everything inside: elements, text, comments.
    void DeleteChildren();

    /// DeleteChildren and AddText in one step that fails whole. Changes no byte when the content is this text already.
    void SetText(std::u16string_view text);
};

/// An element of a document.
class Element : public NodeContainer {
public:
    using NodeContainer::NodeContainer;

    /// The attribute of that name, or a null one.
    [[nodiscard]] Attribute GetAttribute(std::u16string_view name) const;
    /// Appends an attribute with that value, in one step that fails whole; the existing one, as it is, when there is
    /// one of that name.
    Attribute CreateAttribute(std::u16string_view name, std::u16string_view value = {});

    /// AddElementInto, under the name used where the new element is the only child.
    Element CreateElement(std::u16string_view name) { return AddElementInto(name); }

    [[nodiscard]] ElementClone Clone() const noexcept { return ElementClone{this}; }
};

/// An attribute: its element and its name. Null when the element has no attribute of that name (any more).
class Attribute {
public:
    Attribute() = default;

    [[nodiscard]] bool IsNull() const noexcept;
    [[nodiscard]] std::u16string GetName() const;
    /// The decoded value, white space normalised as XML demands; empty when null.
    [[nodiscard]] std::u16string GetText() const;
    /// Whether the decoded value is exactly this text; false when null.
    [[nodiscard]] bool TextIs(std::u16string_view text) const;
    void DeleteChildren();
    void AddText(std::u16string_view text);
    /// DeleteChildren and AddText in one step that fails whole. Changes no byte when the value is this text already.
    void SetText(std::u16string_view text);

private:
    friend class Element;
    Attribute(const Element& element, std::string name);
    [[nodiscard]] std::optional<AttributeSpan> Find() const noexcept;

    Element m_element;
    std::string m_name;  ///< UTF-8
};

/// Walks child elements; dereferencing the end gives the null element.
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

/// The one iteration helper: `for (Element child : ElementChildren(parent))`.
class ElementChildren {
public:
    explicit ElementChildren(const NodeContainer& parent) noexcept : m_parent(parent) {}
    [[nodiscard]] ElementIterator begin() const noexcept { return m_parent.Begin(); }
    [[nodiscard]] ElementIterator end() const noexcept { return m_parent.End(); }

private:
    NodeContainer m_parent;
};

/// Sets an attribute, creating it when missing.
void SetAttribute(Element element, std::u16string_view name, std::u16string_view text);

}  // namespace AdvXMLParser

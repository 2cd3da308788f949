/// Element references: how the indexes refer to a document.
#pragma once

#include "xml/Node.h"

namespace zupm {

/// Refers to one element of a document.
///
/// Lifetime  Owned by the index or object that keeps it. The element belongs to its document: deleting a reference
///           never touches it, and a copy refers to the same element.
/// Threads   As the document.
class CElementRef {
public:
    explicit CElementRef(const AdvXMLParser::Element& element) noexcept : m_element(element) {}
    virtual ~CElementRef() = default;
    CElementRef(const CElementRef&) = default;
    CElementRef& operator=(const CElementRef&) = default;

    [[nodiscard]] AdvXMLParser::Element GetElement() const noexcept { return m_element; }

private:
    AdvXMLParser::Element m_element;
};

/// Refers to a task. Its element is the inner "Task", its group the "TaskGroup" around that.
class CTaskRef : public CElementRef {
public:
    CTaskRef(const AdvXMLParser::Element& group, const AdvXMLParser::Element& task) noexcept
        : CElementRef(task), m_group(group)
    {
    }

    [[nodiscard]] AdvXMLParser::Element GetGroup() const noexcept { return m_group; }

private:
    AdvXMLParser::Element m_group;
};

// Given: see docs/given-oddities.md, "references the other way round".
/// Refers to a product policy. Its element is the outer "Policy", its product the "Product" inside that. CTaskRef is
/// the other way round: a task is rewritten inside its group, a product is replaced in its policy.
class CPolicyRef : public CElementRef {
public:
    /// `isFirst`: no child of the policy before the product can have its ID.
    CPolicyRef(const AdvXMLParser::Element& policy, const AdvXMLParser::Element& product, bool isFirst = false) noexcept
        : CElementRef(policy), m_product(product), m_isFirst(isFirst)
    {
    }

    [[nodiscard]] AdvXMLParser::Element GetProduct() const noexcept { return m_product; }
    /// The product when it is known to be the first child with its ID; otherwise null, and a search has to find that
    /// child, whatever its name.
    [[nodiscard]] AdvXMLParser::Element GetFirstWithId() const noexcept
    {
        return m_isFirst ? m_product : AdvXMLParser::Element();
    }

private:
    AdvXMLParser::Element m_product;
    bool m_isFirst;
};

}  // namespace zupm

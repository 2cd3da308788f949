/// What a document must hold, as a plain tree.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "fuzz/support/PeerDocument.h"

namespace zupm::fuzz {

/// One element; texts are UTF-8, decoded.
struct ModelNode {
    std::string name;
    std::vector<std::pair<std::string, std::string>> attributes;
    std::string text;
    /// White space around child elements may differ: layout is the document's own business.
    bool isLaidOut = false;
    ModelNode* parent = nullptr;
    std::vector<std::unique_ptr<ModelNode>> children;

    /// Appends the child.
    ModelNode& AddChild(std::unique_ptr<ModelNode> child);
    ModelNode& AddChild(std::string_view childName);
    void SetAttribute(std::string_view attribute, std::string_view value);
    [[nodiscard]] std::string* FindAttribute(std::string_view attribute);
    /// A copy of the subtree without a parent.
    [[nodiscard]] std::unique_ptr<ModelNode> Copy() const;
    [[nodiscard]] std::size_t Count() const;
    [[nodiscard]] bool IsInside(const ModelNode& other) const;
    /// Whether a text that was read is this element's text.
    [[nodiscard]] bool HasText(std::string_view read) const;
};

/// The tree of a document that libxml2 read; it has at least one element.
[[nodiscard]] std::unique_ptr<ModelNode> BuildModel(const PeerDocument& document);

/// Demands that libxml2 read what the model says.
void DemandModel(const ModelNode& root, const PeerDocument& document);

}  // namespace zupm::fuzz

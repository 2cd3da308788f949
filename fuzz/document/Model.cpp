#include "fuzz/document/Model.h"

#include <algorithm>

#include "fuzz/support/Demand.h"

namespace zupm::fuzz {

namespace {

std::string WithoutWhiteSpace(std::string_view text)
{
    std::string rest(text);
    std::erase_if(rest, [](char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; });
    return rest;
}

void DemandSame(const ModelNode& node, const PeerElement& element)
{
    Demand(node.name == element.name, "an element has its name", element.name);
    Demand(node.attributes == element.attributes, "an element has its attributes, in their order", element.name);
    Demand(node.HasText(element.text), "an element has its text", element.text);
}

void DemandSubtree(const ModelNode& node, const PeerDocument& document, std::size_t depth, std::size_t& at)
{
    Demand(at < document.elements.size() && document.elements[at].depth == depth, "an element is where it belongs",
           node.name);
    DemandSame(node, document.elements[at++]);
    for (const auto& child : node.children) {
        DemandSubtree(*child, document, depth + 1, at);
    }
}

}  // namespace

ModelNode& ModelNode::AddChild(std::unique_ptr<ModelNode> child)
{
    child->parent = this;
    isLaidOut = true;
    return *children.emplace_back(std::move(child));
}

ModelNode& ModelNode::AddChild(std::string_view childName)
{
    auto child = std::make_unique<ModelNode>();
    child->name = childName;
    return AddChild(std::move(child));
}

std::string* ModelNode::FindAttribute(std::string_view attribute)
{
    const auto found =
        std::find_if(attributes.begin(), attributes.end(), [&](const auto& pair) { return pair.first == attribute; });
    return found == attributes.end() ? nullptr : &found->second;
}

void ModelNode::SetAttribute(std::string_view attribute, std::string_view value)
{
    if (std::string* const found = FindAttribute(attribute)) {
        *found = value;
    } else {
        attributes.emplace_back(attribute, value);
    }
}

std::unique_ptr<ModelNode> ModelNode::Copy() const
{
    auto copy = std::make_unique<ModelNode>();
    copy->name = name;
    copy->attributes = attributes;
    copy->text = text;
    for (const auto& child : children) {
        copy->AddChild(child->Copy());
    }
    copy->isLaidOut = isLaidOut || !children.empty();
    return copy;
}

std::size_t ModelNode::Count() const
{
    std::size_t count = 1;
    for (const auto& child : children) {
        count += child->Count();
    }
    return count;
}

bool ModelNode::IsInside(const ModelNode& other) const
{
    const ModelNode* at = this;
    while (at != nullptr && at != &other) {
        at = at->parent;
    }
    return at != nullptr;
}

bool ModelNode::HasText(std::string_view read) const
{
    return isLaidOut ? WithoutWhiteSpace(read) == WithoutWhiteSpace(text) : read == text;
}

std::unique_ptr<ModelNode> BuildModel(const PeerDocument& document)
{
    auto root = std::make_unique<ModelNode>();
    std::vector<ModelNode*> open;
    for (const PeerElement& element : document.elements) {
        open.resize(element.depth);
        ModelNode& node = open.empty() ? *root : open.back()->AddChild(element.name);
        node.name = element.name;
        node.attributes = element.attributes;
        node.text = element.text;
        open.push_back(&node);
    }
    return root;
}

void DemandModel(const ModelNode& root, const PeerDocument& document)
{
    std::size_t at = 0;
    DemandSubtree(root, document, 0, at);
    Demand(at == document.elements.size(), "there is no further element");
}

}  // namespace zupm::fuzz

/// Edits on a document and the same edits on its model.
#pragma once

#include <memory>
#include <vector>

#include "fuzz/document/Model.h"
#include "fuzz/support/Input.h"
#include "xml/Document.h"

namespace zupm::fuzz {

/// A document, its model, and handles to all elements that it ever had.
class Session {
public:
    /// The model holds what the document holds.
    Session(Input& input, const AdvXMLParser::Document& document, std::unique_ptr<ModelNode> model);

    /// Makes one edit somewhere. An edit that XML cannot hold must be refused and change nothing.
    void Step();

    /// Demands that every handle agrees with the model, and that handles to removed elements are null.
    void DemandHandles() const;

    [[nodiscard]] const ModelNode& Model() const { return *m_model; }

private:
    /// A handle and its element in the model, or null when that was removed.
    struct Place {
        AdvXMLParser::Element element;
        ModelNode* node;
    };

    void Register(const AdvXMLParser::Element& element, ModelNode& node);
    void Forget(const ModelNode& node, bool withItself);
    [[nodiscard]] std::u16string MakeText();

    void AddElement(Place place);
    void AddWholeElement(Place place);
    void AddCopy(Place place);
    void SetText(Place place);
    void AddText(Place place);
    void SetAttribute(Place place);
    void AddAttributeText(Place place);
    void Delete(Place place);
    void DeleteChildren(Place place);

    Input& m_input;
    std::unique_ptr<ModelNode> m_model;
    std::vector<Place> m_places;
};

}  // namespace zupm::fuzz

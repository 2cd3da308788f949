#include "fuzz/document/Session.h"

#include <algorithm>
#include <array>
#include <iterator>

#include "fuzz/support/Demand.h"
#include "fuzz/support/SampleTexts.h"
#include "text/Utf.h"
#include "xml/Exceptions.h"

namespace zupm::fuzz {

using AdvXMLParser::Element;
using AdvXMLParser::ElementChildren;
using AdvXMLParser::InvalidCharacterException;

namespace {

constexpr std::size_t kMostElements = 300;
constexpr std::size_t kLongTextUnits = 20000;

constexpr std::u16string_view kNames[] = {u"a", u"b.c-1", u"_x", u"Section", u"name"};
constexpr std::u16string_view kBadNames[] = {u"", u"1", u"a b", u"a:b", u"a>", u"\u00E9", u"xml:x", u"."};

/// XML 1.0's definition of a character, in UTF-16.
bool CanHold(std::u16string_view text)
{
    return FindInvalidUtf16(text) == kValid && std::all_of(text.begin(), text.end(), [](char16_t unit) {
               return unit == u'\t' || unit == u'\n' || unit == u'\r' || (unit >= u' ' && unit < 0xFFFE);
           });
}

/// Makes an edit that must be refused exactly when `canHold` is false, and returns whether it was made.
template <class Edit>
bool MadeUnlessRefused(bool canHold, Edit edit)
{
    bool isMade = true;
    try {
        edit();
    } catch (const InvalidCharacterException&) {
        isMade = false;
    }
    Demand(isMade == canHold, "an edit is refused exactly when XML cannot hold it");
    return isMade;
}

}  // namespace

Session::Session(Input& input, const AdvXMLParser::Document& document, std::unique_ptr<ModelNode> model)
    : m_input(input), m_model(std::move(model))
{
    Register(document.GetRoot(), *m_model);
}

void Session::Register(const Element& element, ModelNode& node)
{
    m_places.push_back({element, &node});
    auto child = node.children.begin();
    for (const Element childElement : ElementChildren(element)) {
        Demand(child != node.children.end(), "there is no further child element", node.name);
        Register(childElement, **child++);
    }
    Demand(child == node.children.end(), "no child element is missing", node.name);
}

void Session::Forget(const ModelNode& node, bool withItself)
{
    for (Place& place : m_places) {
        if (place.node != nullptr && place.node->IsInside(node) && (withItself || place.node != &node)) {
            place.node = nullptr;
        }
    }
}

void Session::Step()
{
    static constexpr std::array kSteps = {
        &Session::AddElement,       &Session::AddWholeElement, &Session::AddCopy,
        &Session::SetText,          &Session::AddText,         &Session::SetAttribute,
        &Session::AddAttributeText, &Session::Delete,          &Session::DeleteChildren};
    const auto step = kSteps[m_input.UpTo(kSteps.size() - 1)];
    (this->*step)(m_places[m_input.UpTo(m_places.size() - 1)]);
}

void Session::DemandHandles() const
{
    for (const Place& place : m_places) {
        Demand(place.element.IsNull() == (place.node == nullptr), "a handle is null when its element is gone");
        const std::string name = place.node == nullptr ? std::string() : place.node->name;
        Demand(ToUtf8Lossy(place.element.GetName()) == name, "a handle sees the name", name);
        const std::string text = ToUtf8Lossy(place.element.GetText());
        Demand(place.node == nullptr ? text.empty() : place.node->HasText(text), "a handle sees the text", text);
    }
}

/// Long texts make the document search for dead edits.
std::u16string Session::MakeText()
{
    std::u16string text = m_input.Text(kTexts);
    if (m_input.UpTo(31) == 31) {
        while (!text.empty() && text.size() < kLongTextUnits) {
            text += std::u16string(text);
        }
    }
    return text;
}

void Session::AddElement(Place place)
{
    const bool isGood = m_input.UpTo(7) != 7;
    const std::u16string name(isGood ? kNames[m_input.UpTo(std::size(kNames) - 1)]
                                     : kBadNames[m_input.UpTo(std::size(kBadNames) - 1)]);
    Element added;
    const bool isMade =
        MadeUnlessRefused(isGood || place.node == nullptr, [&] { added = place.element.AddElementInto(name); });
    Demand(added.IsNull() == (!isMade || place.node == nullptr), "an added element exists");
    if (!added.IsNull()) {
        Register(added, place.node->AddChild(ToUtf8Lossy(name)));
    }
}

void Session::AddWholeElement(Place place)
{
    const std::u16string value = MakeText();
    const std::u16string text = MakeText();
    Element added;
    MadeUnlessRefused((CanHold(value) && CanHold(text)) || place.node == nullptr,
                      [&] { added = place.element.AddElementInto(u"Setting", u"name", value, text); });
    if (!added.IsNull()) {
        ModelNode& node = place.node->AddChild("Setting");
        node.SetAttribute("name", ToUtf8Lossy(value));
        node.text = ToUtf8Lossy(text);
        Register(added, node);
    }
}

void Session::AddCopy(Place place)
{
    const Place source = m_places[m_input.UpTo(m_places.size() - 1)];
    if (source.node != nullptr && source.node->Count() + m_model->Count() > kMostElements) {
        return;
    }
    const Element added = place.element.Add(source.element.Clone());
    Demand(added.IsNull() == (place.node == nullptr || source.node == nullptr), "an added copy exists");
    if (!added.IsNull()) {
        Register(added, place.node->AddChild(source.node->Copy()));
    }
}

void Session::SetText(Place place)
{
    const std::u16string text = MakeText();
    const bool isMade = MadeUnlessRefused(CanHold(text) || place.node == nullptr, [&] { place.element.SetText(text); });
    if (isMade && place.node != nullptr) {
        Forget(*place.node, false);
        place.node->children.clear();
        place.node->text = ToUtf8Lossy(text);
        place.node->isLaidOut = false;
    }
}

void Session::AddText(Place place)
{
    const std::u16string text = MakeText();
    const bool isMade = MadeUnlessRefused(CanHold(text) || place.node == nullptr, [&] { place.element.AddText(text); });
    if (isMade && place.node != nullptr) {
        place.node->text += ToUtf8Lossy(text);
    }
}

void Session::SetAttribute(Place place)
{
    const std::u16string name(kNames[m_input.UpTo(std::size(kNames) - 1)]);
    const std::u16string value = MakeText();
    const bool isMade = MadeUnlessRefused(CanHold(value) || place.node == nullptr,
                                          [&] { AdvXMLParser::SetAttribute(place.element, name, value); });
    if (isMade && place.node != nullptr) {
        place.node->SetAttribute(ToUtf8Lossy(name), ToUtf8Lossy(value));
        Demand(place.element.GetAttribute(name).GetText() == value, "an attribute reads back");
    }
}

void Session::AddAttributeText(Place place)
{
    const std::u16string name(kNames[m_input.UpTo(std::size(kNames) - 1)]);
    const std::u16string text = MakeText();
    std::string* const value = place.node == nullptr ? nullptr : place.node->FindAttribute(ToUtf8Lossy(name));
    AdvXMLParser::Attribute attribute = place.element.GetAttribute(name);
    Demand(attribute.IsNull() == (value == nullptr), "an attribute exists exactly when it has a value");
    if (MadeUnlessRefused(CanHold(text) || value == nullptr, [&] { attribute.AddText(text); }) && value != nullptr) {
        *value += ToUtf8Lossy(text);
    }
}

void Session::Delete(Place place)
{
    place.element.Delete();
    // The document element cannot be removed.
    if (place.node == nullptr || place.node->parent == nullptr) {
        return;
    }
    ModelNode& parent = *place.node->parent;
    parent.isLaidOut = true;
    Forget(*place.node, true);
    std::erase_if(parent.children, [&](const auto& child) { return child.get() == place.node; });
}

void Session::DeleteChildren(Place place)
{
    place.element.DeleteChildren();
    if (place.node != nullptr) {
        Forget(*place.node, false);
        place.node->children.clear();
        place.node->text.clear();
        place.node->isLaidOut = false;
    }
}

}  // namespace zupm::fuzz

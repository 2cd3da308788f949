#include "fuzz/edit/Script.h"

#include <utility>

#include "fuzz/support/Demand.h"
#include "fuzz/support/PeerDocument.h"
#include "fuzz/support/SampleTexts.h"
#include "xml/Characters.h"

namespace zupm::fuzz {

using test::Bstr;
using test::ProductClient;
using test::TaskClient;
using test::TextResult;

namespace {

/// Whether the file still finds its entries after an edit.
bool DemandEdited(HRESULT code, HRESULT notFound)
{
    Demand(code == 0 || code == notFound || code == result::ElementMissing || code == result::Unexpected,
           "an edit gives a documented code", std::to_string(code));
    return code == 0 || code == notFound;
}

/// An object's own text is a document as well.
void DemandWellFormed(const TextResult& text)
{
    if (text.code == 0) {
        const PeerReading peer = ReadWithPeer(test::Utf8(text.text.value()));
        Demand(peer.document.has_value(), "libxml2 accepts an object's text", peer.refusal);
    }
}

}  // namespace

bool Script::Step()
{
    enum : std::uint8_t { DropProduct, DropTask, Task, TaskToo, Last = 6 };
    switch (m_input.UpTo<std::uint8_t>(Last)) {
        case DropProduct:
            return RemoveProduct();
        case DropTask:
            return RemoveTask();
        case Task:
        case TaskToo:
            return EditTask();
        default:
            return EditProduct();
    }
}

bool Script::EditProduct()
{
    const std::u16string softwareId = m_input.Text(kTexts);
    ProductClient product;
    if (m_file.GetPolicy(softwareId, product) != 0) {
        product = m_file.NewPolicy(softwareId);
    }
    m_known.products.insert(product.SoftwareID().text.value_or(std::u16string()));
    EditSettings(product);
    DemandWellFormed(product.Data());
    return DemandEdited(m_file.Add(product), result::Success);
}

bool Script::EditTask()
{
    const NamePair ids(m_input.Text(kTexts), m_input.Text(kTexts));
    TaskClient task;
    if (m_file.GetTask(ids.first, ids.second, task) != 0) {
        task = m_file.NewTask(ids.first, ids.second);
    }
    m_known.tasks.insert(ids);
    EditSettings(task);
    PutFields(task);
    DemandWellFormed(task.Data());
    return DemandEdited(m_file.Add(task), result::Success);
}

void Script::PutFields(TaskClient& task)
{
    if (m_input.Flag()) {
        const std::u16string name = m_input.Text(kTexts);
        Demand(task.PutDisplayName(name) == 0, "a field is always taken");
        Demand(task.DisplayName() == TextResult{0, name}, "a field reads back");
    }
    Demand(task.Object()->put_Priority(m_input.Flag() ? m_input.Number() : 0) == 0, "a priority is always taken");
}

bool Script::RemoveProduct()
{
    const std::u16string softwareId = m_input.Text(kTexts);
    m_known.products.insert(softwareId);
    return DemandEdited(m_file.RemovePolicy(softwareId), result::PolicyNotFound);
}

/// Removes the whole group, and with it every task of these identifiers.
bool Script::RemoveTask()
{
    const NamePair ids(m_input.Text(kTexts), m_input.Text(kTexts));
    m_known.tasks.insert(ids);
    return DemandEdited(m_file.RemoveTask(ids.first, ids.second), result::TaskNotFound);
}

template <class Client>
void Script::EditSettings(Client& client)
{
    enum : std::uint8_t { RemoveSetting, RemoveSection, Last = 7 };
    for (int edits = m_input.UpTo(3); edits >= 0; --edits) {
        const NamePair names(m_input.Text(kTexts), m_input.Text(kTexts));
        m_known.settings.insert(names);
        HRESULT removed = result::Success;
        switch (m_input.UpTo<std::uint8_t>(Last)) {
            case RemoveSetting:
                removed = client.Object()->RemoveSetting(Bstr(names.first).Get(), Bstr(names.second).Get());
                break;
            case RemoveSection:
                removed = client.RemoveSection(names.first);
                break;
            default:
                PutSetting(client, names);
        }
        Demand(removed == 0 || removed == result::SectionNotFound || removed == result::SettingNotFound,
               "removing gives a documented code", std::to_string(removed));
    }
}

template <class Client>
void Script::PutSetting(Client& client, const NamePair& names)
{
    const std::u16string value = m_input.Text(kTexts);
    const TextResult before = client.Get(names.first, names.second);
    const HRESULT code = client.Put(names.first, names.second, value);
    const TextResult after = client.Get(names.first, names.second);
    if (code == 0) {
        Demand(after == TextResult{0, value}, "a value that was stored reads back");
        return;
    }
    Demand(code == result::Unexpected, "storing gives a documented code", std::to_string(code));
    Demand(!AdvXMLParser::IsXmlText(value) || !AdvXMLParser::IsXmlText(names.first) ||
               !AdvXMLParser::IsXmlText(names.second),
           "only what XML cannot hold is refused");
    Demand(after == before, "a refused value leaves the old one");
}

}  // namespace zupm::fuzz

// Differences as edits in JSON.
#include <cstddef>

#include "tools/zupolicy/report/ChangeReport.h"

namespace zupm::tool {
namespace {

using model::Entry;
using model::EntryChange;
using model::EntryId;

void WriteId(JsonWriter& json, const EntryId& id)
{
    json.Member("softwareId", id.softwareId);
    if (id.taskId) {
        json.Member("taskId", *id.taskId);
    }
}

/// Writes edits one by one.
class EditWriter {
public:
    EditWriter(JsonWriter& json, const ChangeStyle& style) : m_json(json), m_style(style) {}

    void Write(const FileDifference& difference)
    {
        Begin("unsupported");
        m_json.Member("what", difference.what);
        m_json.Member("before", difference.before);
        m_json.Member("after", difference.after);
        End();
    }

    void Write(const EntryChange& change)
    {
        if (change.entry != nullptr) {
            WriteEntry(change);
        }
        if (!change.fields.empty()) {
            WriteFields(change);
        }
        for (const EntryChange::Step& step : change.steps) {
            if (step.setting) {
                WriteSetting(change.id, *step.setting);
            } else {
                WriteSection(change.id, *step.section);
            }
        }
    }

private:
    void Begin(std::string_view edit)
    {
        m_json.BeginDocument();
        if (m_style.writeMembers) {
            m_style.writeMembers(m_json);
        }
        m_json.Member("edit", edit);
        m_hasHidden = false;
    }

    void End()
    {
        if (m_hasHidden) {
            m_json.Key("redacted").Boolean(true);
        }
        m_json.EndObject();
    }

    std::string_view Shown(const EntryId& id, std::string_view section, std::string_view name, std::string_view value)
    {
        m_hasHidden = m_hasHidden || m_style.redaction.Hides(id, section, name);
        return m_style.redaction.Shown(id, section, name, value);
    }

    void WriteFieldValue(std::size_t field, std::string_view value)
    {
        const std::string_view name = model::kFieldNames[field];
        m_hasHidden = m_hasHidden || m_style.redaction.HidesField(name);
        m_json.Member(name, m_style.redaction.ShownField(name, value));
    }

    void WriteSetting(const EntryId& id, const model::SettingChange& change)
    {
        Begin(change.after ? "set" : "absent");
        WriteId(m_json, id);
        m_json.Member("section", change.section);
        m_json.Member("name", change.name);
        if (change.after) {
            m_json.Member("value", Shown(id, change.section, change.name, *change.after));
        }
        if (change.before) {
            m_json.Member("before", Shown(id, change.section, change.name, *change.before));
        } else {
            m_json.Key("before").Null();
        }
        End();
    }

    void WriteSection(const EntryId& id, const model::SectionChange& change)
    {
        Begin(change.isAdded ? "set" : "absent");
        WriteId(m_json, id);
        m_json.Member("section", change.section);
        End();
    }

    void WriteFields(const EntryChange& change)
    {
        const auto write = [&](const char* name, const std::string model::FieldChange::*value) {
            m_json.Key(name).BeginObject();
            for (const model::FieldChange& field : change.fields) {
                WriteFieldValue(static_cast<std::size_t>(field.field), field.*value);
            }
            m_json.EndObject();
        };
        Begin("set");
        WriteId(m_json, change.id);
        write("fields", &model::FieldChange::after);
        write("before", &model::FieldChange::before);
        End();
    }

    void WriteSections(const Entry& entry)
    {
        m_json.Key("sections").BeginArray();
        for (const model::Section& section : entry.sections) {
            m_json.BeginObject();
            m_json.Member("name", section.name);
            m_json.Key("settings").BeginArray();
            for (const model::Setting& setting : section.settings) {
                m_json.BeginObject();
                m_json.Member("name", setting.name);
                m_json.Member("value", Shown(entry.id, section.name, setting.name, setting.value));
                m_json.EndObject();
            }
            m_json.EndArray();
            m_json.EndObject();
        }
        m_json.EndArray();
    }

    void WriteEntry(const EntryChange& change)
    {
        const bool isAdded = change.kind == EntryChange::Kind::Added;
        Begin(isAdded ? "create" : "absent");
        WriteId(m_json, change.id);
        if (isAdded) {
            for (std::size_t i = 0; change.id.taskId && i < model::kFieldNames.size(); ++i) {
                WriteFieldValue(i, change.entry->fields[i]);
            }
            WriteSections(*change.entry);
        }
        End();
    }

    JsonWriter& m_json;
    const ChangeStyle& m_style;
    bool m_hasHidden = false;  ///< the edit that is open has a hidden value
};

}  // namespace

void WriteAsEdit(JsonWriter& json, const FileDifference& difference, const ChangeStyle& style)
{
    EditWriter(json, style).Write(difference);
}

void WriteAsEdits(JsonWriter& json, const EntryChange& change, const ChangeStyle& style)
{
    EditWriter(json, style).Write(change);
}

void WriteAsUnsupported(JsonWriter& json, const EntryId& id, std::string_view reason)
{
    json.BeginDocument();
    json.Member("edit", "unsupported");
    json.Member("what", "create");
    WriteId(json, id);
    json.Member("reason", reason);
    json.EndObject();
}

}  // namespace zupm::tool

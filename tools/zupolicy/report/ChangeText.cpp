// Differences as lines for people.
#include <ostream>

#include "tools/zupolicy/report/ChangeReport.h"
#include "tools/zupolicy/report/Visible.h"

namespace zupm::tool {
namespace {

using model::EntryChange;

std::string InQuotes(std::string_view value)
{
    return "\"" + Visible(value) + "\"";
}

std::string Count(std::size_t count, const char* what)
{
    return " (" + std::to_string(count) + " " + what + (count == 1 ? ")" : "s)");
}

char SignOf(bool isNew, bool isGone)
{
    return isNew ? '+' : isGone ? '-' : '~';
}

/// Writes the lines about one entry.
class ChangeLines {
public:
    ChangeLines(std::ostream& out, const EntryChange& change, const ChangeStyle& style)
        : m_out(out), m_change(change), m_style(style), m_entry(Visible(Describe(change.id)))
    {
    }

    void WriteAll()
    {
        if (m_change.entry != nullptr) {
            WriteEntry();
        }
        for (const model::FieldChange& field : m_change.fields) {
            WriteField(field);
        }
        for (const EntryChange::Step& step : m_change.steps) {
            if (step.setting) {
                WriteSetting(*step.setting);
            } else {
                WriteSection(*step.section);
            }
        }
    }

private:
    std::ostream& Begin(char sign) { return m_out << m_style.linePrefix << sign << ' ' << m_entry; }

    void WriteEntry()
    {
        const std::size_t sections = m_change.entry->sections.Size();
        Begin(SignOf(m_change.kind == EntryChange::Kind::Added, m_change.kind == EntryChange::Kind::Removed))
            << (sections == 0 ? "" : Count(sections, "section")) << '\n';
    }

    void WriteField(const model::FieldChange& field)
    {
        const std::string_view name = model::kFieldNames[static_cast<std::size_t>(field.field)];
        const auto shown = [&](const std::string& value) {
            return InQuotes(m_style.redaction.ShownField(name, value));
        };
        Begin('~') << ' ' << name << ": " << shown(field.before) << " -> " << shown(field.after) << '\n';
    }

    void WriteSetting(const model::SettingChange& change)
    {
        const auto shown = [&](const std::string& value) {
            return InQuotes(m_style.redaction.Shown(m_change.id, change.section, change.name, value));
        };
        Begin(SignOf(!change.before, !change.after))
            << ' ' << Visible(change.section) << '/' << Visible(change.name) << ": ";
        if (change.before) {
            m_out << shown(*change.before) << (change.after ? " -> " : "");
        }
        m_out << (change.after ? shown(*change.after) : "") << '\n';
    }

    void WriteSection(const model::SectionChange& change)
    {
        Begin(SignOf(change.isAdded, !change.isAdded))
            << " section " << Visible(change.section)
            << (change.settings == 0 ? " (empty)" : Count(change.settings, "setting")) << '\n';
    }

    std::ostream& m_out;
    const EntryChange& m_change;
    const ChangeStyle& m_style;
    std::string m_entry;
};

}  // namespace

void WriteAsText(std::ostream& out, const FileDifference& difference, const ChangeStyle& style)
{
    out << style.linePrefix << "~ " << difference.what << ": " << InQuotes(difference.before) << " -> "
        << InQuotes(difference.after) << '\n';
}

void WriteAsText(std::ostream& out, const EntryChange& change, const ChangeStyle& style)
{
    ChangeLines(out, change, style).WriteAll();
}

}  // namespace zupm::tool

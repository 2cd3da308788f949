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

void WriteSetting(std::ostream& out, const std::string& entry, const model::SettingChange& change)
{
    out << SignOf(!change.before, !change.after) << ' ' << entry << ' ' << Visible(change.section) << '/'
        << Visible(change.name) << ": ";
    if (change.before) {
        out << InQuotes(*change.before) << (change.after ? " -> " : "");
    }
    out << (change.after ? InQuotes(*change.after) : "") << '\n';
}

void WriteSection(std::ostream& out, const std::string& entry, const model::SectionChange& change)
{
    out << SignOf(change.isAdded, !change.isAdded) << ' ' << entry << " section " << Visible(change.section)
        << (change.settings == 0 ? " (empty)" : Count(change.settings, "setting")) << '\n';
}

}  // namespace

void WriteAsText(std::ostream& out, const FileDifference& difference)
{
    out << "~ " << difference.what << ": " << InQuotes(difference.before) << " -> " << InQuotes(difference.after)
        << '\n';
}

void WriteAsText(std::ostream& out, const EntryChange& change)
{
    const std::string entry = Visible(Describe(change.id));
    if (change.entry != nullptr) {
        const std::size_t sections = change.entry->sections.Size();
        out << SignOf(change.kind == EntryChange::Kind::Added, change.kind == EntryChange::Kind::Removed) << ' '
            << entry << (sections == 0 ? "" : Count(sections, "section")) << '\n';
    }
    for (const model::FieldChange& field : change.fields) {
        out << "~ " << entry << ' ' << model::kFieldNames[static_cast<std::size_t>(field.field)] << ": "
            << InQuotes(field.before) << " -> " << InQuotes(field.after) << '\n';
    }
    for (const EntryChange::Step& step : change.steps) {
        if (step.setting) {
            WriteSetting(out, entry, *step.setting);
        } else {
            WriteSection(out, entry, *step.section);
        }
    }
}

}  // namespace zupm::tool

#include "tools/zupolicy/report/Change.h"

#include "tools/zupolicy/report/Visible.h"

namespace zupm::tool {
namespace {

std::string ValueText(const std::optional<std::string>& value, const char* otherwise)
{
    return value ? "\"" + Visible(*value) + "\"" : otherwise;
}

/// What happens to the section or setting.
std::string Inside(const Change& change)
{
    if (!change.changed && !change.after) {
        return Visible(*change.section) + (change.name ? "/" + Visible(*change.name) : "") + ": (unchanged)";
    }
    if (!change.name) {
        return Visible(*change.section) + ": (section removed)";
    }
    const std::string setting = Visible(*change.section) + "/" + Visible(*change.name) + ": ";
    if (change.before == change.after) {
        return setting + ValueText(change.after, "") + " (unchanged)";
    }
    return setting + ValueText(change.before, "(none)") + " -> " + ValueText(change.after, "(removed)");
}

std::string Essence(const Change& change)
{
    if (change.section) {
        return Inside(change);
    }
    return change.changed ? "(removed)" : "(unchanged)";
}

}  // namespace

std::string ChangeAsText(const Change& change)
{
    const std::string head = (change.createsTarget ? "new " : "") + Visible(Describe(change.target)) + ": ";
    std::string text = change.isAboutFields ? "" : head + Essence(change) + "\n";
    if (change.isAboutFields && change.fields.empty()) {
        text = head + (change.createsTarget ? "(added)" : "(unchanged)") + "\n";
    }
    for (const FieldChange& field : change.fields) {
        text +=
            head + field.name + ": " + ValueText(field.before, "(none)") + " -> " + ValueText(field.after, "") + "\n";
    }
    return text;
}

}  // namespace zupm::tool

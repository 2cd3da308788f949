#include "tools/zupolicy/report/Change.h"

#include "tools/zupolicy/report/Visible.h"

namespace zupm::tool {
namespace {

std::string ValueText(const std::optional<std::string>& value, const char* otherwise)
{
    return value ? "\"" + Visible(*value) + "\"" : otherwise;
}

/// What happens to the section or setting.
std::string Inside(const Change& change, const Redaction& redaction)
{
    if (!change.changed && !change.after) {
        return Visible(*change.section) + (change.name ? "/" + Visible(*change.name) : "") + ": (unchanged)";
    }
    if (!change.name) {
        return Visible(*change.section) + ": (section removed)";
    }
    const std::string setting = Visible(*change.section) + "/" + Visible(*change.name) + ": ";
    const std::optional<std::string> after = ShownValue(change, change.after, redaction);
    if (change.before == change.after) {
        return setting + ValueText(after, "") + " (unchanged)";
    }
    return setting + ValueText(ShownValue(change, change.before, redaction), "(none)") + " -> " +
           ValueText(after, "(removed)");
}

std::string Essence(const Change& change, const Redaction& redaction)
{
    if (change.section) {
        return Inside(change, redaction);
    }
    return change.changed ? "(removed)" : "(unchanged)";
}

}  // namespace

std::optional<std::string> ShownValue(const Change& change, const std::optional<std::string>& value,
                                      const Redaction& redaction)
{
    const bool isHidden =
        value && redaction.HidesSetting(*change.section, *change.name, change.target.taskId.has_value());
    return isHidden ? std::string(kHidden) : value;
}

FieldChange Shown(FieldChange field, const Redaction& redaction)
{
    if (redaction.HidesField(field.name)) {
        field.before = field.before ? std::optional<std::string>(kHidden) : std::nullopt;
        field.after = kHidden;
    }
    return field;
}

std::string ChangeAsText(const Change& change, const Redaction& redaction)
{
    const std::string head = (change.createsTarget ? "new " : "") + Visible(Describe(change.target)) + ": ";
    std::string text = change.isAboutFields ? "" : head + Essence(change, redaction) + "\n";
    if (change.isAboutFields && change.fields.empty()) {
        text = head + (change.createsTarget ? "(added)" : "(unchanged)") + "\n";
    }
    for (const FieldChange& each : change.fields) {
        const FieldChange field = Shown(each, redaction);
        text +=
            head + field.name + ": " + ValueText(field.before, "(none)") + " -> " + ValueText(field.after, "") + "\n";
    }
    return text;
}

}  // namespace zupm::tool

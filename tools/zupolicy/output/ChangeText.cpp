#include "output/ChangeText.h"

#include "text/Utf8.h"

namespace zupm::tool {
namespace {

std::string Quoted(const std::optional<std::string>& value, const char* otherwise)
{
    if (!value) {
        return otherwise;
    }
    std::string text = "\"";
    text += ForTerminal(*value);
    text += '"';
    return text;
}

/// What happens to the section or setting.
std::string Inside(const Change& change)
{
    if (!change.name) {
        return ForTerminal(*change.section) + ": (section removed)";
    }
    const std::string setting = ForTerminal(*change.section) + "/" + ForTerminal(*change.name) + ": ";
    if (!change.changed) {
        return setting + Quoted(change.after, "") + " (unchanged)";
    }
    return setting + Quoted(change.before, "(none)") + " -> " + Quoted(change.after, "(removed)");
}

}  // namespace

std::string ChangeAsText(const Change& change)
{
    std::string text = change.createsTarget ? "new " : "";
    text += Describe(change.target);
    text += ": ";
    text += change.section ? Inside(change) : "(removed)";
    text += '\n';
    return text;
}

}  // namespace zupm::tool

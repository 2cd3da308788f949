#include "tools/zupolicy/report/IniLosses.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "text/IniText.h"
#include "text/Utf.h"
#include "tools/zupolicy/client/contents/PlaceFinder.h"
#include "tools/zupolicy/report/Visible.h"

namespace zupm::tool {
namespace {

bool BreaksALine(std::string_view text)
{
    return text.find_first_of("\r\n") != text.npos;
}

/// Whether an export that finds the setting in the file writes it into its old place.
bool IsFoundAgain(std::string_view section, std::string_view name, std::string_view value)
{
    const std::u16string wideSection = ToUtf16Lossy(section);
    const std::u16string wideName = ToUtf16Lossy(name);
    return ReadIniValue(SetIniValue({}, wideSection, wideName, ToUtf16Lossy(value)), wideSection, wideName).has_value();
}

/// What becomes of the setting; empty when an INI file holds it.
std::string FateOf(std::string_view section, std::string_view name, std::string_view value)
{
    if (BreaksALine(section) || BreaksALine(name) || BreaksALine(value)) {
        return std::string("is not in the INI file, because ") +
               (BreaksALine(value)  ? "its value"
                : BreaksALine(name) ? "its name"
                                    : "the section's name") +
               " has a line break";
    }
    const std::size_t begin = std::min(name.find_first_not_of("\t\v\f "), name.size());
    if (name.substr(begin).starts_with(';')) {
        return "is a comment in an INI file for many readers";
    }
    if (IsFoundAgain(section, name, value)) {
        return {};
    }
    return std::string(name.substr(begin).starts_with('[')
                           ? "is read as a section from an INI file"
                           : "is read from an INI file with a name that ends at the =") +
           ", and each export adds its line again";
}

const Task* Find(const FileContents& contents, const Target& target)
{
    const auto found = std::ranges::find_if(contents.tasks, [&](const Task& task) {
        return contents.Text(task.softwareId) == target.softwareId && contents.Text(task.taskId) == target.taskId;
    });
    return found == contents.tasks.end() ? nullptr : &*found;
}

}  // namespace

bool HasIniLoss(const model::Entry& task)
{
    for (const model::Section& section : task.sections) {
        for (const model::Setting& setting : section.settings) {
            if (!FateOf(section.name, setting.name, setting.value).empty()) {
                return true;
            }
        }
    }
    return false;
}

void ForEachIniLoss(const PlacedContents& placed, const Target& task, const std::function<void(const Notice&)>& take)
{
    const FileContents& contents = placed.contents;
    const Task* const found = Find(contents, task);
    if (found == nullptr) {
        return;
    }
    std::vector<const Setting*> settings;
    for (std::uint32_t number = found->firstSection; number < found->endSection; ++number) {
        for (std::uint32_t at = contents.sections[number].firstSetting; at != kNone; at = contents.settings[at].next) {
            settings.push_back(&contents.settings[at]);
        }
    }
    // Sections of one name are one record, wherever they are.
    std::ranges::sort(settings, {}, &Setting::at);
    PlaceFinder places(placed.text);
    for (const Setting* const setting : settings) {
        const std::string_view section = contents.Text(contents.sections[setting->section].name);
        const std::string_view name = contents.Text(setting->name);
        if (const std::string fate = FateOf(section, name, contents.Text(setting->value)); !fate.empty()) {
            const LineAndColumn place = places.PlaceOf(setting->at);
            take({place.line, place.column,
                  "setting " + Shortened(name) + " of section " + Shortened(section) + " " + fate});
        }
    }
}

}  // namespace zupm::tool

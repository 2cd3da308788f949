#include "fuzz/edit/IniExport.h"

#include <algorithm>
#include <vector>

#include "common/PrivateProfile.h"
#include "fuzz/support/Demand.h"
#include "fuzz/support/Host.h"
#include "fuzz/support/PeerDocument.h"
#include "text/IniText.h"
#include "text/Utf.h"

namespace zupm::fuzz {

namespace {

struct Setting {
    std::u16string section;
    std::u16string name;
    std::u16string value;
};

std::optional<std::u16string> NameOf(const PeerElement& element)
{
    for (const auto& [attribute, value] : element.attributes) {
        if (attribute == "name") {
            return ToUtf16(value);
        }
    }
    return std::nullopt;
}

/// All settings of the one task in a text, also those that others hide.
std::vector<Setting> SettingsIn(const PeerDocument& document)
{
    constexpr std::size_t kSectionDepth = 3;
    std::vector<Setting> settings;
    std::optional<std::u16string> section;
    for (const PeerElement& element : document.elements) {
        if (element.depth <= kSectionDepth) {
            section = element.depth == kSectionDepth ? NameOf(element) : std::nullopt;
        } else if (const auto name = NameOf(element); name && section && element.depth == kSectionDepth + 1) {
            settings.push_back({*section, *name, ToUtf16(element.text).value()});
        }
    }
    return settings;
}

bool IsAmbiguous(const Setting& setting, const std::vector<Setting>& all)
{
    // The identity fields are written into this section as well.
    return ProfileName(setting.section) == ProfileName(u"Task") ||
           std::count_if(all.begin(), all.end(), [&](const Setting& other) {
               return ProfileName(other.section) == ProfileName(setting.section) &&
                      ProfileName(other.name) == ProfileName(setting.name);
           }) > 1;
}

bool BreaksALine(std::u16string_view text)
{
    return text.find_first_of(std::u16string_view(u"\0\r\n", 3)) != text.npos;
}

/// Whether a reader can find the key: it must not look like something else.
bool IsFindable(const Setting& setting)
{
    const std::u16string_view key = WithoutIniBlanks(setting.name);
    return !key.empty() && key.front() != u'[' && key.find(u'=') == key.npos && !BreaksALine(setting.section) &&
           !BreaksALine(setting.name) && !BreaksALine(setting.value);
}

/// A value as a reader reads it.
std::u16string_view AsRead(std::u16string_view value)
{
    value = WithoutIniBlanks(value);
    const bool isQuoted =
        value.size() > 1 && value.front() == value.back() && (value.front() == u'"' || value.front() == u'\'');
    return isQuoted ? value.substr(1, value.size() - 2) : value;
}

}  // namespace

void DemandIniExport(const test::TaskClient& task)
{
    const PeerReading text = ReadWithPeer(test::Utf8(task.Data().text.value()));
    Demand(text.document.has_value(), "libxml2 accepts a task's text", text.refusal);
    const std::u16string path = Host::Get().Write(u"task.ini", {});
    const HRESULT code = task.Object()->WriteTaskDataToIniFile(test::Bstr(path).Get());
    Demand(code == result::Success || code == result::GeneralFailure,
           "a task is exported, or has a field that cannot be", std::to_string(code));
    if (code < 0) {
        return;
    }
    const std::u16string ini = ToUtf16(Host::Get().Read(u"task.ini")).value();
    const std::vector<Setting> settings = SettingsIn(*text.document);
    for (const Setting& setting : settings) {
        if (IsAmbiguous(setting, settings) || !IsFindable(setting)) {
            continue;
        }
        Demand(ReadIniValue(ini, setting.section, setting.name) == AsRead(setting.value),
               "an exported setting reads back", ToUtf8Lossy(setting.section + u"/" + setting.name));
    }
}

}  // namespace zupm::fuzz

#include "tools/zupolicy/report/WarningText.h"

#include "tools/zupolicy/client/contents/IniName.h"
#include "tools/zupolicy/report/Visible.h"

namespace zupm::tool {
namespace {

std::string NameOf(const FileContents& contents, std::uint32_t number)
{
    const Setting& setting = contents.settings[number];
    return "setting " + Shortened(contents.Text(setting.name)) + " of section " +
           Shortened(contents.Text(contents.sections[setting.section].name));
}

std::string TextOfTwo(const std::string& later, const std::string& first)
{
    return later + " and " + first + " are one in an INI file; it holds one of them";
}

}  // namespace

std::string WarningText(const FileContents& contents, const Warning& warning)
{
    const std::string text = Shortened(contents.Text(warning.text));
    const std::string other = Shortened(contents.Text(warning.other));
    switch (warning.kind) {
        case Warning::Kind::PolicyAgain:
            return "policy " + text + " occurs again; only the first is used";
        case Warning::Kind::TaskAgain:
            return "task " + other + " " + text + " occurs again; only the first is used";
        case Warning::Kind::SectionAgain:
            return "section " + text + " occurs again; both are read as one";
        case Warning::Kind::SettingAgain:
            return "setting " + text + " of section " + other + " occurs again; only the first is used";
        case Warning::Kind::NoRoots:
            return "the file has neither a PolicyRoot nor a TaskRoot element; perhaps it is no policy file";
        case Warning::Kind::NotANumber:
            return "attribute " + other + " is no number: \"" + text + "\"";
        case Warning::Kind::SameInIni:
            return TextOfTwo(NameOf(contents, warning.setting), NameOf(contents, warning.first));
        case Warning::Kind::SameAsField:
            return TextOfTwo(NameOf(contents, warning.setting),
                             "the task's field " + std::string(kIniFields[warning.first]));
    }
    return {};
}

}  // namespace zupm::tool

#include "output/WarningText.h"

#include "text/Visible.h"

namespace zupm::tool {

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
    }
    return {};
}

}  // namespace zupm::tool

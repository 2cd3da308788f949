#include "RandomFile.h"

#include <iterator>

#include "ToolTest.h"

namespace zupm::test {
namespace {

constexpr std::string_view kIds[] = {"PRODUCTA1000", "productA1000",     "P & <\"Q'>", "\xC3\x9C\xE6\x97\xA5",
                                     "{task-1}",     "\xF0\x9F\x9A\x80", " P ",        "P\tQ"};

constexpr std::string_view kNames[] = {
    "General",
    "Task",
    "TaskName",
    "TaskType",
    "Enabled",
    "enabled",
    "New",
    "\xC3\xA9",
    "e\xCC\x81",
    "\xE2\x80\xAE"
    "abc",
    "a\tb\nc\rd",
    " x ",
    "a/b: \"c\"",
    "<&>'\\",
    "\xF0\x9F\x9A\x80",
    "*?",
};

/// XML for an attribute or a text: white space survives in both.
std::string Escaped(std::string_view text)
{
    std::string escaped;
    for (const char c : text) {
        constexpr std::string_view kSigns = "<>&'\"\t\n\r";
        if (kSigns.find(c) == kSigns.npos) {
            escaped += c;
        } else {
            escaped += "&#" + std::to_string(static_cast<int>(c)) + ";";
        }
    }
    return escaped;
}

}  // namespace

std::uint32_t RandomFile::Below(std::uint32_t end)
{
    // The distributions of the standard library differ between libraries; this does not.
    return static_cast<std::uint32_t>(m_random() % end);
}

std::string RandomFile::Pick(bool isId)
{
    return Escaped(isId ? kIds[Below(std::size(kIds))] : kNames[Below(std::size(kNames))]);
}

std::string RandomFile::Value()
{
    constexpr std::string_view kValues[] = {
        "",     "0",         "1",     " ",    "%PATH%\\x",        "\r\n", "]]>", "\xEF\xBF\xBD", "\xE2\x80\xA8",
        "a\tb", "<![CDATA[", "&amp;", "$(x)", "\xF4\x8F\xBF\xBD", "1"};
    const std::uint32_t number = Below(std::size(kValues) + 1);
    return number == std::size(kValues) ? std::string(Below(2000), 'x') : Escaped(kValues[number]);
}

std::string RandomFile::Section()
{
    std::string text = "<Section name=\"" + Pick(false) + "\">";
    for (std::uint32_t left = Below(5); left > 0; --left) {
        text += "<Setting name=\"" + Pick(false) + "\">" + Value() + "</Setting>\n";
    }
    return text + "</Section>\n";
}

std::string RandomFile::Sections()
{
    std::string text;
    for (std::uint32_t left = Below(5); left > 0; --left) {
        text += Section();
    }
    return text;
}

std::string RandomFile::TaskGroup()
{
    std::string text = "<TaskGroup SoftwareID=\"" + Pick(true) + "\" TaskID=\"" + Pick(true) + "\"";
    for (const char* field : {"DisplayName", "TaskType", "Platforms", "CreatorID"}) {
        text += Below(4) == 0 ? "" : " " + std::string(field) + "=\"" + Pick(false) + "\"";
    }
    text += Below(4) == 0 ? "" : " TaskPriority=\"" + std::to_string(static_cast<std::int32_t>(m_random())) + "\"";
    return text + "><Task>" + Sections() + "</Task></TaskGroup>\n";
}

std::string RandomFile::Make()
{
    std::string products;
    for (std::uint32_t left = Below(8); left > 0; --left) {
        products += "<Product SoftwareID=\"" + Pick(true) + "\">" + Sections() + "</Product>\n";
    }
    std::string tasks;
    for (std::uint32_t left = Below(8); left > 0; --left) {
        tasks += TaskGroup();
    }
    return SmallFile(products, tasks);
}

}  // namespace zupm::test

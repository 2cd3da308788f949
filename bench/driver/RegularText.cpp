#include "bench/driver/RegularText.h"

#include "bench/Names.h"

namespace zupm::bench {

namespace {

constexpr int kSettingsOfASection = 50;

}  // namespace

std::string ProductText(int number, int settings)
{
    std::string text = "      <Product SoftwareID=\"" + ProductName(number) + "\">\r\n";
    for (int setting = 0; setting < settings; ++setting) {
        if (setting % kSettingsOfASection == 0) {
            text += "        <Section name=\"Section" + std::to_string(setting / kSettingsOfASection) + "\">\r\n";
        }
        text += "          <Setting name=\"" + SettingName(setting) + "\">value of setting " + std::to_string(setting) +
                "</Setting>\r\n";
        if (setting % kSettingsOfASection == kSettingsOfASection - 1 || setting == settings - 1) {
            text += "        </Section>\r\n";
        }
    }
    return text + "      </Product>\r\n";
}

std::string TaskText(int number)
{
    const std::string id = std::to_string(number);
    return "    <TaskGroup SoftwareID=\"" + ProductName(number % 10) + "\" TaskID=\"{task-" + id +
           "}\" DisplayName=\"Task " + id + "\" TaskType=\"Scan\" TaskVersion=\"20260101000000\">\r\n" +
           "      <Task>\r\n        <Section name=\"General\">\r\n          <Setting name=\"Enabled\">1</Setting>\r\n" +
           "        </Section>\r\n      </Task>\r\n    </TaskGroup>\r\n";
}

std::string DocumentText(const std::string& encoding, const std::string& products, const std::string& tasks)
{
    return "<?xml version=\"1.0\" encoding=\"" + encoding + "\"?>\r\n<PolicyFile>\r\n  <PolicyRoot version=\"1\">\r\n" +
           "    <PolicyGroup Path=\"0_4\">\r\n    <Policy PathID=\"0_4\" PolicyVersion=\"1\">\r\n" + products +
           "    </Policy>\r\n    </PolicyGroup>\r\n  </PolicyRoot>\r\n  <TaskRoot version=\"1\">\r\n" + tasks +
           "  </TaskRoot>\r\n</PolicyFile>\r\n";
}

}  // namespace zupm::bench

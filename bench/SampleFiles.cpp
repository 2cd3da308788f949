#include "bench/SampleFiles.h"

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <tuple>

namespace zupm::bench {

namespace {

constexpr int kSettingsOfASizedProduct = 40;
constexpr int kSettingsOfASection = 50;

/// Removes the folder at the end of the run.
class Folder {
public:
    Folder() : m_path(std::filesystem::temp_directory_path() / ("zupm-bench-" + std::to_string(getpid())))
    {
        std::filesystem::create_directories(m_path);
    }
    ~Folder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;

    [[nodiscard]] std::string File(const std::string& name) const { return (m_path / name).string(); }

private:
    std::filesystem::path m_path;
};

const Folder& TheFolder()
{
    static const Folder folder;
    return folder;
}

std::string Product(int number, int settings)
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

std::string Task(int number)
{
    const std::string id = std::to_string(number);
    return "    <TaskGroup SoftwareID=\"" + ProductName(number % 10) + "\" TaskID=\"{task-" + id +
           "}\" DisplayName=\"Task " + id + "\" TaskType=\"Scan\" TaskVersion=\"20260101000000\">\r\n" +
           "      <Task>\r\n        <Section name=\"General\">\r\n          <Setting name=\"Enabled\">1</Setting>\r\n" +
           "        </Section>\r\n      </Task>\r\n    </TaskGroup>\r\n";
}

std::string Document(const std::string& encoding, const std::string& products, const std::string& tasks)
{
    return "<?xml version=\"1.0\" encoding=\"" + encoding + "\"?>\r\n<PolicyFile>\r\n  <PolicyRoot version=\"1\">\r\n" +
           "    <PolicyGroup Path=\"0_4\">\r\n    <Policy PathID=\"0_4\" PolicyVersion=\"1\">\r\n" + products +
           "    </Policy>\r\n    </PolicyGroup>\r\n  </PolicyRoot>\r\n  <TaskRoot version=\"1\">\r\n" + tasks +
           "  </TaskRoot>\r\n</PolicyFile>\r\n";
}

std::string AsUtf16(const std::string& ascii)
{
    std::string bytes = "\xFF\xFE";
    bytes.reserve(2 * ascii.size() + 2);
    for (const char c : ascii) {
        bytes += c;
        bytes += '\0';
    }
    return bytes;
}

std::string Write(const std::string& name, const std::string& bytes)
{
    std::string path = TheFolder().File(name);
    std::ofstream(path, std::ios::binary) << bytes;
    return path;
}

std::string MakeFileOfSize(std::size_t bytes, bool asUtf16)
{
    const std::size_t characters = asUtf16 ? bytes / 2 : bytes;
    std::string products;
    products.reserve(characters + 4096);
    std::string tasks;
    for (int number = 0; products.size() + tasks.size() < characters; ++number) {
        products += Product(number, kSettingsOfASizedProduct);
        tasks += number % 4 == 0 ? Task(number / 4) : std::string();
    }
    const std::string text = Document(asUtf16 ? "UTF-16" : "UTF-8", products, tasks);
    return Write("size" + std::to_string(bytes) + (asUtf16 ? "w" : "n"), asUtf16 ? AsUtf16(text) : text);
}

}  // namespace

std::string ProductName(int number)
{
    return "PRODUCT" + std::to_string(1000 + number);
}

std::string SettingName(int number)
{
    return "Setting" + std::to_string(number);
}

std::string ScratchFile(const std::string& name)
{
    return TheFolder().File(name);
}

const std::string& FileOfSize(std::size_t bytes, bool asUtf16)
{
    static std::map<std::pair<std::size_t, bool>, std::string> made;
    std::string& path = made[{bytes, asUtf16}];
    if (path.empty()) {
        path = MakeFileOfSize(bytes, asUtf16);
    }
    return path;
}

const std::string& FileOfShape(int products, int settings, int tasks)
{
    static std::map<std::tuple<int, int, int>, std::string> made;
    std::string& path = made[{products, settings, tasks}];
    if (path.empty()) {
        std::string productText;
        for (int number = 0; number < products; ++number) {
            productText += Product(number, settings);
        }
        std::string taskText;
        for (int number = 0; number < tasks; ++number) {
            taskText += Task(number);
        }
        path = Write("shape" + std::to_string(products) + "-" + std::to_string(settings) + "-" + std::to_string(tasks),
                     Document("UTF-8", productText, taskText));
    }
    return path;
}

}  // namespace zupm::bench

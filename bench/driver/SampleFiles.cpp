#include "bench/driver/SampleFiles.h"

#include <filesystem>
#include <fstream>
#include <functional>
#include <map>

#include "bench/driver/RegularText.h"
#include "bench/driver/ScratchFolder.h"
#include "bench/driver/VariedText.h"

namespace zupm::bench {

namespace {

constexpr int kSettingsOfASizedProduct = 40;

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

void WriteScratch(const std::string& path, const std::string& bytes)
{
    std::ofstream(path, std::ios::binary) << bytes;
}

/// What `make` makes, at the first call for that name.
const SampleFile& MadeOnce(const std::string& name, const std::function<int(const std::string& path)>& make)
{
    static std::map<std::string, SampleFile> made;
    SampleFile& file = made[name];
    if (file.path.empty()) {
        file.path = ScratchFile(name + ".xml");
        file.products = make(file.path);
    }
    return file;
}

/// Products, and a task for every fourth one, up to a size in characters.
struct Entries {
    std::string products;
    std::string tasks;
    int count = 0;
};

Entries EntriesOf(std::size_t characters, const std::function<std::string(int)>& product)
{
    Entries entries;
    entries.products.reserve(characters + 4096);
    for (; entries.products.size() + entries.tasks.size() < characters; ++entries.count) {
        entries.products += product(entries.count);
        if (entries.count % 4 == 0) {
            entries.tasks += TaskText(entries.count / 4);
        }
    }
    return entries;
}

int MakeOfSize(const std::string& path, std::size_t bytes, bool asUtf16)
{
    const Entries entries = EntriesOf(asUtf16 ? bytes / 2 : bytes,
                                      [](int number) { return ProductText(number, kSettingsOfASizedProduct); });
    const std::string text = DocumentText(asUtf16 ? "UTF-16" : "UTF-8", entries.products, entries.tasks);
    WriteScratch(path, asUtf16 ? AsUtf16(text) : text);
    return entries.count;
}

int MakeVaried(const std::string& path, std::size_t bytes, std::string (*product)(int, Chance&))
{
    Chance chance;  // as the language seeds it: always the same
    const Entries entries = EntriesOf(bytes, [&](int number) { return product(number, chance); });
    WriteScratch(path, DocumentText("UTF-8", entries.products, entries.tasks));
    return entries.count;
}

int MakeOfShape(const std::string& path, int products, int settings, int tasks)
{
    Entries entries;
    for (; entries.count < products; ++entries.count) {
        entries.products += ProductText(entries.count, settings);
    }
    for (int number = 0; number < tasks; ++number) {
        entries.tasks += TaskText(number);
    }
    WriteScratch(path, DocumentText("UTF-8", entries.products, entries.tasks));
    return products;
}

}  // namespace

const SampleFile& FileOfSize(std::size_t bytes, bool asUtf16)
{
    return MadeOnce("size" + std::to_string(bytes) + (asUtf16 ? "-utf16" : ""),
                    [=](const std::string& path) { return MakeOfSize(path, bytes, asUtf16); });
}

const SampleFile& FileOfShape(int products, int settings, int tasks)
{
    return MadeOnce("shape" + std::to_string(products) + "-" + std::to_string(settings) + "-" + std::to_string(tasks),
                    [=](const std::string& path) { return MakeOfShape(path, products, settings, tasks); });
}

const SampleFile& IrregularFile(std::size_t bytes)
{
    return MadeOnce("irregular" + std::to_string(bytes),
                    [=](const std::string& path) { return MakeVaried(path, bytes, IrregularProductText); });
}

const SampleFile& ForeignWordsFile(std::size_t bytes)
{
    return MadeOnce("foreign" + std::to_string(bytes),
                    [=](const std::string& path) { return MakeVaried(path, bytes, ForeignProductText); });
}

std::string ScratchCopyOf(const SampleFile& file)
{
    std::string copy = file.path + ".copy.xml";
    std::filesystem::copy_file(file.path, copy, std::filesystem::copy_options::overwrite_existing);
    return copy;
}

}  // namespace zupm::bench

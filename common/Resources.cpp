#include "common/Resources.h"

#include <filesystem>
#include <mutex>
#include <utility>

namespace zupm {

namespace {

constexpr char16_t kSeparator = static_cast<char16_t>(std::filesystem::path::preferred_separator);

// A plain pointer that is never freed at exit: another thread may still load then.
std::mutex g_resourceLock;
constinit const std::u16string* g_folder = nullptr;

std::u16string ResourceFolder()
{
    const std::lock_guard lock(g_resourceLock);
    return g_folder != nullptr ? *g_folder : OwnModuleFolder();
}

std::u16string LanguageFolder(std::uint16_t language)
{
    constexpr std::u16string_view kDigits = u"0123456789abcdef";
    std::u16string name;
    for (unsigned shift = 16; shift != 0;) {
        shift -= 4;
        name.push_back(kDigits[(static_cast<unsigned>(language) >> shift) & 0xFu]);
    }
    return name;
}

/// The resource module of one folder: that of the language, or the one for all languages.
std::shared_ptr<const ResourceModule> LoadFrom(const std::u16string& folder, std::u16string_view fileName,
                                               std::uint16_t language)
{
    std::u16string path = folder + LanguageFolder(language) + kSeparator;
    if (auto module = LoadResourceModule(path.append(fileName))) {
        return module;
    }
    path = folder;
    return LoadResourceModule(path.append(fileName));
}

}  // namespace

std::shared_ptr<const ResourceModule> LoadResourceDLLW(std::u16string_view fileName, std::uint16_t language)
{
    std::u16string folder = ResourceFolder();
    // Without a folder, or with a name that leads out of it, anybody's file could be found.
    if (folder.empty() || fileName.empty() || fileName.find_first_of(u"/\\:") != fileName.npos) {
        return nullptr;
    }
    folder += kSeparator;
    auto module = LoadFrom(folder, fileName, language);
    if (module != nullptr || PackageFolder().empty()) {
        return module;
    }
    return LoadFrom(folder.append(PackageFolder()) + kSeparator, fileName, language);
}

void SetResourceFolder(std::u16string folder)
{
    auto next = folder.empty() ? nullptr : std::make_unique<const std::u16string>(std::move(folder));
    const std::lock_guard lock(g_resourceLock);
    const std::unique_ptr<const std::u16string> last(std::exchange(g_folder, next.release()));
}

std::u16string GetResString(const ResourceModule* module, std::uint32_t id)
{
    return module == nullptr ? std::u16string() : module->FindString(id).value_or(std::u16string());
}

}  // namespace zupm

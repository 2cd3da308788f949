#include "platform/Modules.h"

#include <windows.h>

#include <utility>

#include "platform/win32/Wide.h"

namespace zupm {

namespace {

using win32::Wide;
using win32::WideBuffer;

constexpr std::size_t kLongestPath = 32768;

struct ModuleCloser {
    using pointer = HMODULE;
    void operator()(HMODULE module) const noexcept { FreeLibrary(module); }
};
using MappedModule = std::unique_ptr<HMODULE, ModuleCloser>;

/// A module mapped as data: its code is never reached, and its strings are read where they lie.
class DataFileModule final : public ResourceModule {
public:
    explicit DataFileModule(MappedModule module) noexcept : m_module(std::move(module)) {}

    [[nodiscard]] std::optional<std::u16string> FindString(std::uint32_t id) const override
    {
        // With no room given, the call hands out the address of the text instead of copying it.
        const wchar_t* text = nullptr;
        const int length = LoadStringW(m_module.get(), id, reinterpret_cast<wchar_t*>(&text), 0);
        if (length <= 0 || text == nullptr) {
            return std::nullopt;
        }
        return win32::FromWide({text, static_cast<std::size_t>(length)});
    }

private:
    MappedModule m_module;
};

bool IsFullPath(std::u16string_view path) noexcept
{
    return path.starts_with(u"\\\\") || (path.size() > 2 && path[1] == u':' && (path[2] == u'\\' || path[2] == u'/'));
}

WINBOOL CALLBACK NoteStringTable(HMODULE, LPCWSTR, LPWSTR, LONG_PTR found)
{
    *reinterpret_cast<bool*>(found) = true;  // NOLINT(performance-no-int-to-ptr): how the call passes pointers on
    return FALSE;
}

bool HasStrings(HMODULE module) noexcept
{
    bool found = false;
    EnumResourceNamesW(module, MAKEINTRESOURCEW(6 /* string table */), NoteStringTable,
                       reinterpret_cast<LONG_PTR>(&found));
    return found;
}

}  // namespace

std::shared_ptr<const ResourceModule> LoadResourceModule(std::u16string_view fullPath)
{
    // The system would search its path for a bare name, and anybody could have put a file there.
    if (!IsFullPath(fullPath)) {
        return nullptr;
    }
    MappedModule module(LoadLibraryExW(Wide(std::u16string(fullPath)), nullptr,
                                       LOAD_LIBRARY_AS_DATAFILE | LOAD_LIBRARY_AS_IMAGE_RESOURCE));
    if (module == nullptr || !HasStrings(module.get())) {
        return nullptr;
    }
    return std::make_shared<const DataFileModule>(std::move(module));
}

std::u16string OwnModulePath()
{
    HMODULE module = nullptr;
    if (GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                           reinterpret_cast<LPCWSTR>(&OwnModulePath), &module) == 0) {
        return {};
    }
    std::u16string path(MAX_PATH, u'\0');
    for (;;) {
        const DWORD length = GetModuleFileNameW(module, WideBuffer(path), static_cast<DWORD>(path.size()));
        if (length == 0) {
            return {};
        }
        if (length < path.size()) {
            path.resize(length);
            return path;
        }
        if (path.size() >= kLongestPath) {
            return {};
        }
        path.resize(path.size() * 2);
    }
}

std::u16string OwnModuleFolder()
{
    std::u16string path = OwnModulePath();
    const std::size_t separator = path.find_last_of(u"\\/");
    path.resize(separator == std::u16string::npos ? 0 : separator);
    return path;
}

std::u16string_view PackageFolder() noexcept
{
    return {};
}

std::uint16_t GetUserDefaultLangID() noexcept
{
    return ::GetUserDefaultLangID();
}

}  // namespace zupm

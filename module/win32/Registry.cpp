#include "module/Registry.h"

#include <windows.h>

#include <memory>

#include "platform/win32/Errors.h"
#include "platform/win32/Wide.h"

namespace zupm::registry {

namespace {

using win32::CodeFromError;
using win32::Wide;

struct KeyCloser {
    using pointer = HKEY;
    void operator()(HKEY key) const noexcept { RegCloseKey(key); }
};
using Key = std::unique_ptr<HKEY, KeyCloser>;

/// Opens the key below the classes root for writing, creating it and every key above it.
result::Code OpenOrCreate(const std::u16string& path, Key& key) noexcept
{
    if (path.empty()) {
        return result::InvalidName;
    }
    HKEY opened = nullptr;
    const LSTATUS status =
        RegCreateKeyExW(HKEY_CLASSES_ROOT, Wide(path), 0, nullptr, REG_OPTION_NON_VOLATILE,
                        KEY_SET_VALUE | KEY_CREATE_SUB_KEY | KEY_WOW64_64KEY, nullptr, &opened, nullptr);
    if (status != ERROR_SUCCESS) {
        return CodeFromError(static_cast<DWORD>(status));
    }
    key.reset(opened);
    return result::Success;
}

}  // namespace

result::Code CreateKey(const std::u16string& key) noexcept
{
    Key opened;
    return OpenOrCreate(key, opened);
}

result::Code SetValue(const std::u16string& key, const std::u16string& name, const std::u16string& value) noexcept
{
    Key opened;
    if (const result::Code code = OpenOrCreate(key, opened); code < 0) {
        return code;
    }
    const auto bytes = static_cast<DWORD>((value.size() + 1) * sizeof(char16_t));
    const LSTATUS status = RegSetValueExW(opened.get(), name.empty() ? nullptr : Wide(name), 0, REG_SZ,
                                          reinterpret_cast<const BYTE*>(value.c_str()), bytes);
    return status == ERROR_SUCCESS ? result::Success : CodeFromError(static_cast<DWORD>(status));
}

result::Code DeleteTree(const std::u16string& key) noexcept
{
    // An empty path would be the whole classes root.
    if (key.empty()) {
        return result::InvalidName;
    }
    const LSTATUS status = RegDeleteTreeW(HKEY_CLASSES_ROOT, Wide(key));
    return status == ERROR_SUCCESS || status == ERROR_FILE_NOT_FOUND ? result::Success
                                                                     : CodeFromError(static_cast<DWORD>(status));
}

}  // namespace zupm::registry

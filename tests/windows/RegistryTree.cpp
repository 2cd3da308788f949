#include "tests/windows/RegistryTree.h"

#include <windows.h>

#include <memory>
#include <stdexcept>

#include "tests/windows/Registration.h"

namespace zupm::test {

namespace {

struct KeyCloser {
    using pointer = HKEY;
    void operator()(HKEY key) const { RegCloseKey(key); }
};
using Key = std::unique_ptr<HKEY, KeyCloser>;

constexpr DWORD kLongestText = 4096;

Key Open(const std::wstring& path)
{
    HKEY key = nullptr;
    RegOpenKeyExW(HKEY_CLASSES_ROOT, path.c_str(), 0, KEY_READ, &key);
    return Key(key);
}

RegistryValues ReadValues(HKEY key)
{
    RegistryValues values;
    for (DWORD index = 0;; ++index) {
        wchar_t name[256];
        wchar_t text[kLongestText];
        DWORD nameLength = 256;
        DWORD bytes = sizeof text;
        DWORD type = 0;
        if (RegEnumValueW(key, index, name, &nameLength, nullptr, &type, reinterpret_cast<BYTE*>(text), &bytes) !=
            ERROR_SUCCESS) {
            return values;
        }
        if (type != REG_SZ || bytes < sizeof(wchar_t)) {
            throw std::runtime_error("a registry value is no text");
        }
        values[std::wstring(name, nameLength)] = std::wstring(text, bytes / sizeof(wchar_t) - 1);
    }
}

void ReadInto(RegistryTree& tree, const std::wstring& root, const std::wstring& below)
{
    const Key key = Open(below.empty() ? root : root + L"\\" + below);
    if (key == nullptr) {
        throw std::runtime_error("no registry key " + Narrow(root));
    }
    tree[below] = ReadValues(key.get());
    for (DWORD index = 0;; ++index) {
        wchar_t name[256];
        DWORD length = 256;
        if (RegEnumKeyExW(key.get(), index, name, &length, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS) {
            return;
        }
        const std::wstring child(name, length);
        ReadInto(tree, root, below.empty() ? child : below + L"\\" + child);
    }
}

}  // namespace

RegistryTree ReadRegistryTree(const std::wstring& key)
{
    RegistryTree tree;
    ReadInto(tree, key, {});
    return tree;
}

bool HasRegistryKey(const std::wstring& key)
{
    return Open(key) != nullptr;
}

std::wstring ReadRegistryText(const std::wstring& key)
{
    const Key opened = Open(key);
    if (opened == nullptr) {
        return L"<no key>";
    }
    const RegistryValues values = ReadValues(opened.get());
    const auto found = values.find(L"");
    return found == values.end() ? L"<no value>" : found->second;
}

void WriteRegistryText(const std::wstring& key, const std::wstring& text)
{
    RegSetKeyValueW(HKEY_CLASSES_ROOT, key.c_str(), nullptr, REG_SZ, text.c_str(),
                    static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
}

void DeleteRegistryTree(const std::wstring& key)
{
    RegDeleteTreeW(HKEY_CLASSES_ROOT, key.c_str());
}

}  // namespace zupm::test

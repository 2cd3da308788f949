// The registry functions: texts converted, the file found anew each time (a test may have changed the environment).
#include <optional>
#include <string>

#include "comrt/Guarded.h"
#include "comrt/RegistryStore.h"
#include "text/Utf.h"
#include "zuPolicyManager/zucomrt.h"

namespace zupm::runtime {
namespace {

/// A caller's text as the file keeps it; null counts as empty.
std::optional<std::string> FileText(LPCOLESTR text)
{
    return ToUtf8(text == nullptr ? std::u16string_view() : std::u16string_view(text));
}

/// Runs `use` on the store in its place.
template <class Use>
HRESULT WithStore(Use&& use) noexcept
{
    return Guarded([&]() -> HRESULT {
        std::u16string path;
        const result::Code located = RegistryStore::Locate(path);
        return located != result::Success ? located : use(RegistryStore(std::move(path)));
    });
}

HRESULT NewString(const std::string& text, BSTR* out)
{
    const auto converted = ToUtf16(text);
    if (!converted) {
        return kBadRegistryFile;
    }
    *out = SysAllocStringLen(converted->data(), static_cast<UINT>(converted->size()));
    return *out == nullptr ? E_OUTOFMEMORY : S_OK;
}

}  // namespace
}  // namespace zupm::runtime

using namespace zupm;
using namespace zupm::runtime;

HRESULT ZuRegistryCreateKey(LPCOLESTR key) noexcept
{
    return WithStore([&](const RegistryStore& store) -> HRESULT {
        const auto keyText = FileText(key);
        return keyText ? store.CreateKey(*keyText) : result::NotValidInItsEncoding;
    });
}

HRESULT ZuRegistrySetValue(LPCOLESTR key, LPCOLESTR name, LPCOLESTR value) noexcept
{
    return WithStore([&](const RegistryStore& store) -> HRESULT {
        const auto keyText = FileText(key);
        const auto nameText = FileText(name);
        const auto valueText = FileText(value);
        return keyText && nameText && valueText ? store.SetValue(*keyText, *nameText, *valueText)
                                                : result::NotValidInItsEncoding;
    });
}

HRESULT ZuRegistryGetValue(LPCOLESTR key, LPCOLESTR name, BSTR* value) noexcept
{
    if (value == nullptr) {
        return E_POINTER;
    }
    *value = nullptr;
    return WithStore([&](const RegistryStore& store) -> HRESULT {
        const auto keyText = FileText(key);
        const auto nameText = FileText(name);
        if (!keyText || !nameText) {
            return result::FileNotFound;
        }
        RegistryText text;
        const result::Code read = store.Read(text);
        if (read != result::Success) {
            return read;
        }
        const std::string* found = text.FindValue(*keyText, *nameText);
        return found == nullptr ? result::FileNotFound : NewString(*found, value);
    });
}

HRESULT ZuRegistryDeleteTree(LPCOLESTR key) noexcept
{
    return WithStore([&](const RegistryStore& store) -> HRESULT {
        const auto keyText = FileText(key);
        return keyText ? store.DeleteTree(*keyText) : result::Success;
    });
}

#include "module/RegistryScript.h"

#include <new>

#include "module/Registry.h"

namespace zupm {

namespace {

result::Code WriteKey(const ScriptKey& key)
{
    if (key.rule == ScriptRule::ForceRemove) {
        if (const result::Code code = registry::DeleteTree(key.path); code < 0) {
            return code;
        }
    }
    if (key.values.empty()) {
        return registry::CreateKey(key.path);
    }
    for (const ScriptValue& value : key.values) {
        if (const result::Code code = registry::SetValue(key.path, value.name, value.text); code < 0) {
            return code;
        }
    }
    return result::Success;
}

result::Code Register(const RegistryScript& script)
{
    for (const ScriptKey& key : script) {
        if (const result::Code code = WriteKey(key); code < 0) {
            return code;
        }
    }
    return result::Success;
}

result::Code Unregister(const RegistryScript& script)
{
    result::Code first = result::Success;
    for (const ScriptKey& key : script) {
        if (!key.isRemovalRoot) {
            continue;
        }
        const result::Code code = registry::DeleteTree(key.path);
        first = first < 0 ? first : code;
    }
    return first;
}

}  // namespace

result::Code RunRegistryScript(std::string_view text, ScriptMode mode, std::u16string_view modulePath) noexcept
{
    try {
        const auto script = ReadRegistryScript(text, modulePath);
        const auto* const keys = std::get_if<RegistryScript>(&script);
        if (keys == nullptr) {
            return result::GeneralFailure;
        }
        return mode == ScriptMode::Register ? Register(*keys) : Unregister(*keys);
    } catch (const std::bad_alloc&) {
        return result::OutOfMemory;
    } catch (...) {
        return result::Unexpected;
    }
}

}  // namespace zupm

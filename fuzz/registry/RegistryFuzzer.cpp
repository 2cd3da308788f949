// Any bytes as a registry file, and changes to what it holds.
//
// Promises: a text written out gives the same registry again; a change that is accepted is found, one that is refused
// changes nothing.
#include <optional>
#include <string>
#include <string_view>

#include "comrt/RegistryText.h"
#include "fuzz/support/Demand.h"
#include "fuzz/support/Input.h"

namespace zupm::fuzz {

namespace {

using runtime::RegistryText;

void DemandStable(const RegistryText& registry)
{
    const std::string text = registry.Serialise();
    const std::optional<RegistryText> again = RegistryText::Parse(text);
    Demand(again.has_value(), "what is written out can be read", text);
    Demand(again->Serialise() == text, "what is written out gives the same registry", text);
}

void DemandRefused(result::Code code, const RegistryText& registry, const std::string& before)
{
    Demand(registry.Serialise() == before, "a refused change changes nothing", before);
    Demand(code == result::InvalidName || code == result::NameTooLong, "a refusal has a documented code",
           std::to_string(code));
}

void CreateKey(RegistryText& registry, const std::string& key)
{
    const std::string before = registry.Serialise();
    if (const result::Code code = registry.CreateKey(key); code < 0) {
        DemandRefused(code, registry, before);
        return;
    }
    Demand(registry.HasKey(key), "a created key is there", key);
    const std::size_t parent = key.rfind('\\');
    Demand(parent == std::string::npos || registry.HasKey(std::string_view(key).substr(0, parent)),
           "a created key has its parents", key);
}

void SetValue(RegistryText& registry, const std::string& key, const std::string& name, const std::string& value)
{
    const std::string before = registry.Serialise();
    if (const result::Code code = registry.SetValue(key, name, value); code < 0) {
        DemandRefused(code, registry, before);
        return;
    }
    const std::string* found = registry.FindValue(key, name);
    Demand(found != nullptr && *found == value, "a value that was set is found", key);
}

void DeleteTree(RegistryText& registry, const std::string& key)
{
    registry.DeleteTree(key);
    Demand(!registry.HasKey(key), "a deleted key is gone", key);
    Demand(!registry.HasKey(key + "\\A"), "nothing is left below a deleted key", key);
}

void Change(RegistryText& registry, Input& input)
{
    const int kind = input.UpTo(2);
    const std::string key = input.Bytes(600);
    if (kind == 0) {
        CreateKey(registry, key);
    } else if (kind == 1) {
        const std::string name = input.Bytes(64);
        SetValue(registry, key, name, input.Bytes(64));
    } else {
        DeleteTree(registry, key);
    }
    DemandStable(registry);
}

void Run(Input input)
{
    const int changes = input.UpTo(6);
    const std::string script = changes == 0 ? std::string() : input.Bytes(1000);
    std::optional<RegistryText> registry = RegistryText::Parse(input.Rest());
    if (!registry) {
        return;
    }
    DemandStable(*registry);
    Input rest{std::string_view(script)};
    for (int i = 0; i < changes; ++i) {
        Change(*registry, rest);
    }
}

}  // namespace

}  // namespace zupm::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    zupm::fuzz::Run(zupm::fuzz::Input(data, size));
    return 0;
}

// Any bytes as a registration script.
//
// Promises: a script that cannot be read reports why and where, and changes nothing; registering twice gives what
// registering once gave; unregistering leaves only keys that are never removed; keys of others stay.
#include <algorithm>
#include <string>
#include <string_view>
#include <variant>

#include "fuzz/script/FakeRegistry.h"
#include "fuzz/support/Demand.h"
#include "module/RegistryScript.h"
#include "text/AsciiCase.h"
#include "text/Utf.h"

namespace zupm::fuzz {

namespace {

constexpr std::u16string_view kModulePath = u"/opt/m\u00E9.so";
constexpr std::string_view kForeignKey = "Foreign\\Key";

void StartWithForeignKey()
{
    FakeRegistry() = runtime::RegistryText();
    Demand(FakeRegistry().SetValue(kForeignKey, "Name", "value") == result::Success, "the fake registry works");
}

void DemandErrorWithPlace(const ScriptError& error, std::string_view text)
{
    const auto lines = static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n')) + 1;
    Demand(error.line > 0 && error.line <= lines, "an error has its line", std::to_string(error.line));
    Demand(!error.reason.empty(), "an error has a reason");
}

void DemandRefused(std::string_view text)
{
    const std::string before = FakeRegistry().Serialise();
    for (const ScriptMode mode : {ScriptMode::Register, ScriptMode::Unregister}) {
        Demand(RunRegistryScript(text, mode, kModulePath) == result::GeneralFailure, "a bad script is refused");
        Demand(FakeRegistry().Serialise() == before, "a bad script changes nothing");
    }
}

bool NamesForeignKey(const RegistryScript& script)
{
    constexpr std::u16string_view kForeign = u"Foreign";
    return std::any_of(script.begin(), script.end(), [kForeign](const ScriptKey& key) {
        return EqualsIgnoringAsciiCase(std::u16string_view(key.path).substr(0, kForeign.size()), kForeign);
    });
}

void DemandForeignKey(const RegistryScript& script)
{
    if (NamesForeignKey(script)) {
        return;
    }
    const std::string* const value = FakeRegistry().FindValue(kForeignKey, "Name");
    Demand(value != nullptr && *value == "value", "keys of others stay");
}

void DemandRegistered(std::string_view text)
{
    const result::Code code = RunRegistryScript(text, ScriptMode::Register, kModulePath);
    Demand(code == result::Success || code == result::NameTooLong, "a script that can be read is run",
           std::to_string(code));
    const std::string once = FakeRegistry().Serialise();
    Demand(RunRegistryScript(text, ScriptMode::Register, kModulePath) == code, "registering again gives the same code");
    Demand(code < 0 || FakeRegistry().Serialise() == once, "registering again changes nothing", once);
}

void DemandUnregistered(std::string_view text, const RegistryScript& script)
{
    Demand(RunRegistryScript(text, ScriptMode::Unregister, kModulePath) == result::Success, "unregistering succeeds");
    for (const ScriptKey& key : script) {
        Demand(!key.isRemovalRoot || !FakeRegistry().HasKey(ToUtf8Lossy(key.path)), "what may be removed is gone",
               ToUtf8Lossy(key.path));
        Demand(
            key.isRemovalRoot || key.rule != ScriptRule::ForceRemove || !FakeRegistry().HasKey(ToUtf8Lossy(key.path)),
            "what lies below goes too", ToUtf8Lossy(key.path));
    }
}

void Run(std::string_view text)
{
    StartWithForeignKey();
    const auto read = ReadRegistryScript(text, kModulePath);
    if (const auto* const error = std::get_if<ScriptError>(&read)) {
        DemandErrorWithPlace(*error, text);
        DemandRefused(text);
        return;
    }
    const RegistryScript& script = std::get<RegistryScript>(read);
    DemandRegistered(text);
    DemandForeignKey(script);
    DemandUnregistered(text, script);
    DemandForeignKey(script);
}

}  // namespace

}  // namespace zupm::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    zupm::fuzz::Run({reinterpret_cast<const char*>(data), size});
    return 0;
}

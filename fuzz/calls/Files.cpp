#include "fuzz/calls/Files.h"

#include <algorithm>
#include <filesystem>
#include <iterator>

#include "fuzz/support/Demand.h"
#include "fuzz/support/Host.h"
#include "fuzz/support/SampleTexts.h"

namespace zupm::fuzz {

namespace {

namespace fs = std::filesystem;

constexpr std::u16string_view kInput = u"input.xml";
constexpr std::u16string_view kSample = u"sample.xml";
constexpr std::u16string_view kSaved = u"saved.xml";
constexpr std::u16string_view kIni = u"task.ini";

}  // namespace

void ResetFiles(std::string_view input)
{
    const Host& host = Host::Get();
    static_cast<void>(host.Write(kInput, input));
    static_cast<void>(host.Write(kSample, kSampleFile));
    fs::remove(fs::path(host.Path(kSaved)));
    fs::remove(fs::path(host.Path(kIni)));
}

void DemandNoStrayFiles()
{
    constexpr std::u16string_view kKnown[] = {kInput, kSample, kSaved, kIni};
    for (const fs::directory_entry& entry : fs::directory_iterator(fs::path(Host::Get().Path(u"")))) {
        const std::u16string name = entry.path().filename().u16string();
        Demand(std::find(std::begin(kKnown), std::end(kKnown), name) != std::end(kKnown), "no stray file is left",
               entry.path().string());
    }
}

bool TakesPath(Interfaces interfaces, DISPID id)
{
    const auto takesPath = [&](const Member& member) {
        return member.id == id && !member.parameters.empty() &&
               (member.parameters.front().name == u"strPolicyFile" ||
                member.parameters.front().name == u"bstrFileName");
    };
    return std::ranges::any_of(interfaces, [&](const InterfaceDescription* description) {
        return std::ranges::any_of(description->members, takesPath);
    });
}

std::u16string SamplePath()
{
    return Host::Get().Path(kSample);
}

std::u16string MakePath(Input& input)
{
    constexpr std::size_t kLongName = 300;
    const Host& host = Host::Get();
    const std::u16string names[] = {
        SamplePath(),
        host.Path(kInput),
        host.Path(kSaved),
        host.Path(kIni),
        host.Path(u"missing/none.xml"),
        host.Path(u"sample.xml/none.xml"),
        host.Path(std::u16string(kLongName, u'x')),
        host.Path(u""),
        host.Path(kSaved) + std::u16string(1, u'\0') + u"x",
        host.Path(kSaved) + u"\xD800",
        u"",
    };
    return names[input.UpTo(std::size(names) - 1)];
}

}  // namespace zupm::fuzz

#include "fuzz/ini/IniModel.h"

#include <algorithm>
#include <cstddef>

#include "fuzz/support/Demand.h"
#include "platform/common/CaseFold.h"
#include "platform/common/Utf.h"

namespace zupm::fuzz {

namespace {

using Kind = IniLine::Kind;

constexpr std::size_t kNowhere = static_cast<std::size_t>(-1);

bool IsNamed(const IniLine& line, Kind kind, std::u16string_view name)
{
    return line.kind == kind && EqualsIgnoringCase(line.name, name);
}

/// The setting's line and the line behind the last one of its section that is not blank; kNowhere without them.
struct Expected {
    std::size_t setting = kNowhere;
    std::size_t sectionEnd = kNowhere;
};

Expected Locate(const IniLines& lines, const IniWrite& write)
{
    Expected expected;
    std::size_t at = 0;
    while (at < lines.size() && !IsNamed(lines[at], Kind::Section, write.section)) {
        ++at;
    }
    if (at == lines.size()) {
        return expected;
    }
    expected.sectionEnd = at + 1;
    for (++at; at < lines.size() && lines[at].kind != Kind::Section; ++at) {
        if (IsNamed(lines[at], Kind::Setting, write.key)) {
            expected.setting = at;
            return expected;
        }
        expected.sectionEnd = lines[at].kind == Kind::Blank ? expected.sectionEnd : at + 1;
    }
    return expected;
}

void DemandSetting(const IniLine& line, const IniWrite& write)
{
    Demand(IsNamed(line, Kind::Setting, write.key), "the setting stands where it belongs", ToUtf8Lossy(line.raw));
    Demand(line.value == write.value, "the value reads back exactly", ToUtf8Lossy(line.raw));
}

void DemandSame(const IniLines& before, std::size_t from, std::size_t to, const IniLines& after, std::size_t at)
{
    Demand(at + (to - from) <= after.size(), "no line is lost");
    for (; from != to; ++from, ++at) {
        Demand(before[from] == after[at], "every other line stays as it was", ToUtf8Lossy(after[at].raw));
    }
}

}  // namespace

void DemandOnlyThisWritten(const IniLines& before, const IniLines& after, const IniWrite& write)
{
    const Expected expected = Locate(before, write);
    std::size_t kept = before.size();
    std::size_t added = 2;
    if (expected.setting != kNowhere) {
        kept = expected.setting;
        added = 0;
    } else if (expected.sectionEnd != kNowhere) {
        kept = expected.sectionEnd;
        added = 1;
    }
    Demand(after.size() == before.size() + added, "no other line appears or goes");
    DemandSame(before, 0, kept, after, 0);
    if (added == 2) {
        Demand(IsNamed(after[kept], Kind::Section, write.section), "a new section has its line",
               ToUtf8Lossy(after[kept].raw));
    }
    const std::size_t setting = kept + (added == 2 ? 1 : 0);
    DemandSetting(after[setting], write);
    DemandSame(before, kept + (added == 0 ? 1 : 0), before.size(), after, setting + 1);
}

}  // namespace zupm::fuzz

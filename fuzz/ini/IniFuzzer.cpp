// Settings written into any bytes as an INI file.
//
// Promises: what is accepted reads back exactly, for an independent reader too, and no other line appears, goes or
// changes; what is refused leaves the file byte for byte as it was.
#include <optional>
#include <string>
#include <string_view>

#include "fuzz/ini/IniModel.h"
#include "fuzz/ini/IniReader.h"
#include "fuzz/support/Demand.h"
#include "fuzz/support/Input.h"
#include "platform/PrivateProfile.h"
#include "platform/common/IniText.h"
#include "platform/common/Utf.h"
#include "platform/native/ProfileEncoding.h"
#include "tests/support/TempFolder.h"

namespace zupm::fuzz {

namespace {

constexpr std::u16string_view kNames[] = {u"Task",   u"task", u"TaskName", u"General", u"a", u"A", u"\u00E4",
                                          u"\u00C4", u"a b",  u"'a'",      u"\"a\"",   u"#", u"[", u"]"};
constexpr std::u16string_view kValues[] = {u"",     u"1",      u" 1 ",    u"\"1\"", u"'1'",        u"\"",
                                           u"'",    u"[Task]", u"a=b",    u";x",    u"\U0001F600", u"\t",
                                           u"\"\"", u"\u3000", u"\uFEFF", u"a;b",   u"C:\\x",      u"%x%"};

std::u16string TextOf(const std::string& bytes)
{
    const std::optional<native::ProfileText> profile = native::DecodeProfile(bytes);
    Demand(profile.has_value(), "a file that was written can be read");
    return profile->text;
}

void Write(const test::TempFolder& folder, const IniWrite& write)
{
    const std::string before = folder.Read(u"task.ini");
    const bool isWritten = WritePrivateProfileStringW(write.section, write.key, write.value, folder.Path(u"task.ini"));
    const std::string after = folder.Read(u"task.ini");
    if (!isWritten) {
        Demand(after == before, "what is refused leaves the file as it was");
        return;
    }
    const std::u16string text = TextOf(after);
    Demand(ReadIniValue(text, write.section, write.key) == write.value, "the value reads back exactly");
    DemandOnlyThisWritten(ReadIniLines(TextOf(before)), ReadIniLines(text), write);
}

void WriteSome(Input input)
{
    static const test::TempFolder folder;
    const int writes = input.UpTo(3) + 1;
    std::vector<IniWrite> script;
    for (int i = 0; i < writes; ++i) {
        IniWrite write{input.Text(kNames), input.Text(kNames), input.Text(kValues)};
        script.push_back(std::move(write));
    }
    folder.Write(u"task.ini", input.Rest());
    for (const IniWrite& write : script) {
        Write(folder, write);
    }
}

}  // namespace

}  // namespace zupm::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    zupm::fuzz::WriteSome(zupm::fuzz::Input(data, size));
    return 0;
}

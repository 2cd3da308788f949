// Settings written into any bytes as an INI file.
//
// Promises: nothing but a line break or null character is refused, and that leaves the file byte for byte as it was;
// what is accepted is one line in the file, with a header at most, for an independent reader too; it reads back as the
// system's call leaves it, and writing it again changes nothing more.
#include <optional>
#include <string>
#include <string_view>

#include "common/PrivateProfile.h"
#include "fuzz/support/Demand.h"
#include "fuzz/support/Input.h"
#include "platform/posix/ProfileEncoding.h"
#include "tests/support/IniReader.h"
#include "tests/support/TempFolder.h"
#include "text/IniText.h"
#include "text/Utf.h"

namespace zupm::fuzz {

namespace {

/// One setting to be written.
struct IniWrite {
    std::u16string section;
    std::u16string key;
    std::u16string value;
};

constexpr std::u16string_view kNames[] = {u"Task",   u"task", u"TaskName", u"General", u"a", u"A", u"\u00E4",
                                          u"\u00C4", u"a b",  u"'a'",      u"\"a\"",   u"#", u"[", u"]"};
constexpr std::u16string_view kValues[] = {u"",     u"1",      u" 1 ",    u"\"1\"", u"'1'",        u"\"",
                                           u"'",    u"[Task]", u"a=b",    u";x",    u"\U0001F600", u"\t",
                                           u"\"\"", u"\u3000", u"\uFEFF", u"a;b",   u"C:\\x",      u"%x%"};

std::u16string TextOf(const std::string& bytes)
{
    return native::DecodeProfile(bytes).text;
}

bool BreaksALine(std::u16string_view text)
{
    return text.find_first_of(std::u16string_view(u"\0\r\n", 3)) != text.npos;
}

std::size_t LinesIn(const std::string& bytes)
{
    return test::IniLines(TextOf(bytes)).size();
}

/// Whether a line with this key cannot be taken for anything else.
bool IsPlainKey(std::u16string_view key)
{
    key = WithoutIniBlanks(key);
    return !key.empty() && key.front() != u'[' && key.find(u'=') == key.npos;
}

void DemandReadsBack(const std::string& bytes, const IniWrite& write)
{
    std::u16string_view value = WithoutIniBlanks(write.value);
    if (value.size() > 1 && value.front() == value.back() && (value.front() == u'"' || value.front() == u'\'')) {
        value = value.substr(1, value.size() - 2);
    }
    Demand(ReadIniValue(TextOf(bytes), write.section, write.key) == value, "the value reads back");
}

/// Whether an 8-bit file holds what need not survive: bytes that are no UTF-8 have no place in UTF-16, and at the
/// file's beginning they, or a signature's character, could pass for a signature.
bool MayBeRefused(const std::string& before)
{
    const native::ProfileText profile = native::DecodeProfile(before);
    const bool isWide = profile.encoding == native::ProfileEncoding::Utf16LittleEndianSigned ||
                        profile.encoding == native::ProfileEncoding::Utf16BigEndianSigned;
    return !isWide && (FindInvalidUtf16(profile.text) != kValid || profile.text.find(u'\uFEFF') != profile.text.npos);
}

void Write(const test::TempFolder& folder, const IniWrite& write)
{
    const std::u16string path = folder.Path(u"task.ini");
    const std::string before = folder.Read(u"task.ini");
    const bool isWritten = WritePrivateProfileStringW(write.section, write.key, write.value, path);
    const std::string after = folder.Read(u"task.ini");
    const bool breaks = BreaksALine(write.section) || BreaksALine(write.key) || BreaksALine(write.value);
    Demand(!isWritten || !breaks, "a line break or null character is refused");
    Demand(isWritten || breaks || MayBeRefused(before), "nothing else is refused that the file can hold");
    if (!isWritten) {
        Demand(after == before, "what is refused leaves the file as it was");
        return;
    }
    Demand(LinesIn(after) <= LinesIn(before) + 2, "a setting is one line, and one more for a new section");
    // The system's call ends a name at a null character and keeps the blanks before it. Without the null character they
    // are no part of the name any more, and the line may then be the first with that name.
    const bool endsNames = TextOf(before).find(u'\0') != std::u16string::npos;
    if (IsPlainKey(write.key) && !endsNames) {
        DemandReadsBack(after, write);
    }
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

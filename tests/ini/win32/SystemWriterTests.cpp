// The component's writer beside the system's own call: both get the same files and settings, and the bytes are
// compared.
#include <windows.h>

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "common/PrivateProfile.h"
#include "tests/ini/IniCases.h"
#include "tests/ini/IniTest.h"
#include "text/IniText.h"

namespace zupm::test {

namespace {

const wchar_t* Wide(const std::u16string& text)
{
    return reinterpret_cast<const wchar_t*>(text.c_str());
}

/// A folder with one file a case: the system's call remembers files that it has seen.
class SystemWriter : public testing::Test {
protected:
    /// The path of a new file with the case's old bytes.
    std::u16string NewFile(const IniCase& input)
    {
        const std::u16string name = Utf16(std::to_string(++m_files)) + u".ini";
        return input.before ? m_folder.Write(name, *input.before) : m_folder.Path(name);
    }
    /// The bytes after the system's own call.
    std::string AfterSystem(const IniCase& input)
    {
        const std::u16string path = NewFile(input);
        EXPECT_NE(::WritePrivateProfileStringW(Wide(input.section), Wide(input.key), Wide(input.value), Wide(path)), 0);
        return ReadBytes(path);
    }

    TempFolder m_folder;
    int m_files = 0;
};

/// A file's text in UTF-16, with a signature or without.
std::u16string Units(std::string_view bytes)
{
    std::u16string text;
    for (std::size_t at = 2; at + 1 < bytes.size(); at += 2) {
        text += static_cast<char16_t>(static_cast<unsigned char>(bytes[at]) | static_cast<unsigned char>(bytes[at + 1])
                                                                                  << 8);
    }
    return text;
}

}  // namespace

TEST_F(SystemWriter, StillGivesWhatWasRecorded)
{
    if (const char* const path = std::getenv("ZUPM_WRITE_INI_RECORDING")) {
        std::vector<IniRecord> records;
        for (const IniCase& input : IniCases()) {
            records.push_back({input, AfterSystem(input)});
        }
        WriteRecording(path, records);
    }
    for (const IniRecord& record : ReadRecording(ZUPM_INI_RECORDING)) {
        EXPECT_EQ(AfterSystem(record.input), record.after);
    }
}

TEST_F(SystemWriter, AndOurs_GiveTheSameBytes)
{
    for (const IniCase& input : RandomIniCases(2, 300)) {
        const std::u16string path = NewFile(input);
        EXPECT_TRUE(zupm::WritePrivateProfileStringW(input.section, input.key, input.value, path));
        EXPECT_EQ(ReadBytes(path), AfterSystem(input));
    }
}

TEST_F(SystemWriter, AndTheNativeText_GiveTheSameUnits)
{
    for (IniCase input : RandomIniCases(3, 600)) {
        const std::u16string text = input.before->starts_with("\xFF\xFE")
                                        ? Units(*input.before)
                                        : std::u16string(input.before->begin(), input.before->end());
        input.before = WideIni(text);
        EXPECT_EQ(WideIni(SetIniValue(text, input.section, input.key, input.value)), AfterSystem(input));
    }
}

/// The identity of a new task, as it is dumped.
constexpr std::pair<const char16_t*, const char16_t*> kFields[] = {
    {u"TaskName", u"invalid"},     {u"Platforms", u"invalid"}, {u"TaskPriority", u"0"},
    {u"SoftwareName", u"invalid"}, {u"TaskID", u"invalid"},    {u"CreatorSoftwareID", u"invalid"},
    {u"TaskType", u"invalid"},     {u"TaskVersion", u""}};

class SystemDump : public IniTest {
protected:
    /// The bytes after the system's own call wrote every field and then the setting into the old content.
    [[nodiscard]] std::string OfSystem(std::string_view old, const std::vector<std::u16string>& setting) const
    {
        const std::u16string path = m_folder.Write(u"system.ini", old);
        for (const auto& [key, value] : kFields) {
            EXPECT_NE(::WritePrivateProfileStringW(L"Task", Wide(key), Wide(value), Wide(path)), 0);
        }
        ::WritePrivateProfileStringW(Wide(setting[0]), Wide(setting[1]), Wide(setting[2]), Wide(path));
        return m_folder.Read(u"system.ini");
    }
};

TEST_F(SystemDump, ATasksDumpHasTheBytesOfTheSystemsCalls)
{
    constexpr std::string_view kLoose = "; mine\n\n[Before] x\n kept = 1\n\n[task]\ntaskname = old";
    for (const IniText& row : kIniTexts) {
        SCOPED_TRACE(row.label);
        const std::u16string text(row.text);
        const bool isInCodePage = std::ranges::all_of(text, [](char16_t unit) { return unit < 0x80; });
        if (!row.isTaken || !isInCodePage) {
            continue;
        }
        for (const std::vector<std::u16string>& setting :
             {std::vector<std::u16string>{u"S", u"x", text}, {text, u"x", u"1"}, {u"S", text, u"1"}}) {
            EXPECT_EQ(DumpOver(kLoose, {setting}), 0);
            EXPECT_EQ(Bytes(), OfSystem(kLoose, setting));
        }
    }
}

TEST_F(SystemDump, AFileNameAlone_IsAFileOfTheWindowsFolder)
{
    std::wstring folder(MAX_PATH, L'\0');
    folder.resize(GetWindowsDirectoryW(folder.data(), MAX_PATH));
    const std::wstring name = L"zupm-" + m_folder.Folder().filename().wstring() + L".ini";
    const std::filesystem::path place = folder + L"\\" + name;
    const std::u16string given(name.begin(), name.end());
    std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(m_folder.Folder());
    EXPECT_TRUE(zupm::WritePrivateProfileStringW(u"S", u"k", u"ours", given));
    std::wstring value(10, L'\0');
    value.resize(GetPrivateProfileStringW(L"S", L"k", L"", value.data(), 10, name.c_str()));
    EXPECT_EQ(value, L"ours");
    EXPECT_TRUE(std::filesystem::exists(place));
    EXPECT_NE(::WritePrivateProfileStringW(L"S", L"k", L"theirs", name.c_str()), 0);
    EXPECT_EQ(ReadBytes(place.u16string()), "[S]\r\nk=theirs\r\n");
    std::filesystem::remove(place);
    for (const std::u16string& here : {u".\\" + given, u"./" + given}) {
        EXPECT_TRUE(zupm::WritePrivateProfileStringW(u"S", u"k", u"v", here));
        EXPECT_TRUE(m_folder.Has(given));
        EXPECT_FALSE(std::filesystem::exists(place));
        std::filesystem::remove(m_folder.Folder() / name);
    }
    std::filesystem::current_path(before);
}

TEST_F(SystemDump, TextOutsideTheCodePage_TurnsTheFileIntoUtf16ThatTheSystemReads)
{
    EXPECT_EQ(DumpOver("[Caf\xE9]\r\nx=\xE9\r\n", {{u"S", u"x", u"\u5B9A\u671F"}}), 0);
    EXPECT_TRUE(Bytes().starts_with("\xFF\xFE"));
    const std::u16string path = m_folder.Path(u"task.ini");
    std::wstring value(10, L'\0');
    value.resize(GetPrivateProfileStringW(L"S", L"x", L"", value.data(), 10, Wide(path)));
    EXPECT_EQ(value, L"\u5B9A\u671F");
    EXPECT_TRUE(m_log.Take().empty());
}

}  // namespace zupm::test

// The component's writer beside the system's own call: both get the same files and settings, and the bytes are
// compared.
#include <windows.h>

#include <cstdlib>

#include "platform/PrivateProfile.h"
#include "platform/common/IniText.h"
#include "tests/ini/IniCases.h"
#include "tests/ini/IniTest.h"

namespace zupm::test {

namespace {

const wchar_t* Wide(const std::u16string& text)
{
    return reinterpret_cast<const wchar_t*>(text.c_str());
}

/// A folder with one file a case: the system's call keeps files that it has seen in mind.
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

}  // namespace zupm::test

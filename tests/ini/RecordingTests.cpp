// The bytes of INI files are those that the system's own call gives: of each recorded case, on both targets.
#include "common/PrivateProfile.h"
#include "tests/ini/IniCases.h"
#include "tests/ini/IniTest.h"
#include "text/IniText.h"

namespace zupm::test {

TEST(IniRecording, HoldsTheCasesThatTheTestsMake)
{
    const std::vector<IniCase> cases = IniCases();
    const std::vector<IniRecord> records = ReadRecording(ZUPM_INI_RECORDING);
    ASSERT_EQ(records.size(), cases.size());
    for (std::size_t i = 0; i < cases.size(); ++i) {
        EXPECT_EQ(records[i].input, cases[i]) << "case " << i;
    }
}

TEST(IniRecording, EverySettingGivesTheBytesOfTheSystemsCall)
{
    const TempFolder folder;
    LogCapture log;
    std::size_t number = 0;
    for (const IniRecord& record : ReadRecording(ZUPM_INI_RECORDING)) {
        const std::u16string name = u"f" + Utf16(std::to_string(number));
        if (record.input.before) {
            static_cast<void>(folder.Write(name, *record.input.before));
        }
        EXPECT_TRUE(
            WritePrivateProfileStringW(record.input.section, record.input.key, record.input.value, folder.Path(name)));
        EXPECT_EQ(folder.Read(name), record.after) << "case " << number;
        ++number;
    }
    EXPECT_TRUE(log.Take().empty());
    EXPECT_EQ(folder.Names().size(), number);
}

}  // namespace zupm::test

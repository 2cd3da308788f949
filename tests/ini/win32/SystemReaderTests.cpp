// What the system's own reader gets from the files: most programs read INI files with it.
#include <windows.h>

#include "tests/ini/IniTest.h"

namespace zupm::test {

namespace {

class SystemReader : public IniTest {
protected:
    [[nodiscard]] std::u16string Get(const std::u16string& section, const std::u16string& key) const
    {
        std::wstring value(70000, L'\0');
        const std::filesystem::path path(m_folder.Path(u"task.ini"));
        const DWORD length = GetPrivateProfileStringW(Wide(section).c_str(), Wide(key).c_str(), L"(none)", value.data(),
                                                      static_cast<DWORD>(value.size()), path.c_str());
        return std::u16string(value.begin(), value.begin() + length);
    }
    [[nodiscard]] static std::wstring Wide(std::u16string_view text) { return {text.begin(), text.end()}; }
};

}  // namespace

TEST_F(SystemReader, GetsEveryValue)
{
    for (const IniText& row : kIniTexts) {
        SCOPED_TRACE(row.label);
        EXPECT_EQ(DumpOver(kOld, {{u"S", u"x", std::u16string(row.text)}, {u"S", u"y", u"next"}}), 0);
        EXPECT_EQ(Get(u"S", u"x"), row.isTaken ? IniReader::AsRead(row.text) : u"(none)");
        EXPECT_EQ(Get(u"S", u"y"), u"next");
        EXPECT_EQ(Get(u"Evil", u"x"), u"(none)");
        EXPECT_EQ(Get(u"Before", u"kept"), u"1");
        EXPECT_EQ(Get(u"After", u"kept"), u"2");
    }
}

TEST_F(SystemReader, GetsLongValues)
{
    for (const std::size_t length : {0x7FFEU, 0x7FFFU, 0x8000U, 0xFFFEU}) {
        const std::u16string text(length, u'x');
        EXPECT_EQ(DumpOver(kOld, {{u"S", u"x", text}}), 0);
        EXPECT_EQ(Get(u"S", u"x").size(), length);
    }
}

}  // namespace zupm::test

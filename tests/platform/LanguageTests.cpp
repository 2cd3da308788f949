#include <gtest/gtest.h>

#include <cstdlib>
#include <optional>
#include <string>

#include "platform/Modules.h"

namespace zupm {
namespace {

constexpr const char* kVariables[] = {"LC_ALL", "LC_MESSAGES", "LANG"};

class Language : public testing::Test {
protected:
    Language()
    {
        for (std::size_t i = 0; i < std::size(kVariables); ++i) {
            const char* const value = std::getenv(kVariables[i]);
            m_before[i] = value == nullptr ? std::nullopt : std::optional<std::string>(value);
        }
        Set(nullptr, nullptr, nullptr);
    }
    ~Language() override
    {
        for (std::size_t i = 0; i < std::size(kVariables); ++i) {
            SetOne(kVariables[i], m_before[i] ? m_before[i]->c_str() : nullptr);
        }
    }

    static void SetOne(const char* name, const char* value)
    {
        value == nullptr ? ::unsetenv(name) : ::setenv(name, value, 1);
    }

    static void Set(const char* all, const char* messages, const char* language)
    {
        SetOne("LC_ALL", all);
        SetOne("LC_MESSAGES", messages);
        SetOne("LANG", language);
    }

    std::optional<std::string> m_before[std::size(kVariables)];
};

struct LanguageCase {
    const char* locale;
    std::uint16_t id;
};

constexpr LanguageCase kCases[] = {
    {"de_DE.UTF-8", 0x0407},   {"de_DE", 0x0407},       {"de", 0x0407},    {"de_AT@euro", 0x0C07},
    {"de_LU", 0x0407},         {"en_GB.UTF-8", 0x0809}, {"pt_PT", 0x0816}, {"pt", 0x0416},
    {"zh_CN.GB18030", 0x0804}, {"ja_JP.eucJP", 0x0411}, {"C", 0x0409},     {"C.UTF-8", 0x0409},
    {"POSIX", 0x0409},         {"xx_YY", 0x0409},       {"", 0x0409},      {"../../etc", 0x0409},
};

TEST_F(Language, Locales_HaveTheirIdentifiers)
{
    for (const LanguageCase& row : kCases) {
        Set(nullptr, nullptr, row.locale);
        EXPECT_EQ(GetUserDefaultLangID(), row.id) << row.locale;
    }
}

TEST_F(Language, FirstVariableThatIsNotEmpty_Counts)
{
    EXPECT_EQ(GetUserDefaultLangID(), 0x0409);
    Set(nullptr, nullptr, "fr_FR");
    EXPECT_EQ(GetUserDefaultLangID(), 0x040C);
    Set(nullptr, "de_DE", "fr_FR");
    EXPECT_EQ(GetUserDefaultLangID(), 0x0407);
    Set("", "de_DE", "fr_FR");
    EXPECT_EQ(GetUserDefaultLangID(), 0x0407);
    Set("it_IT", "de_DE", "fr_FR");
    EXPECT_EQ(GetUserDefaultLangID(), 0x0410);
}

}  // namespace
}  // namespace zupm

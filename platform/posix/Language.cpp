#include <cstdlib>
#include <string_view>

#include "platform/Modules.h"

namespace zupm {

namespace {

constexpr std::uint16_t kAmericanEnglish = 0x0409;

/// A locale's name up to its country, and its language identifier. The first row of a language counts for countries
/// without a row.
struct Language {
    std::string_view locale;
    std::uint16_t id;
};

constexpr Language kLanguages[] = {
    {"ar_SA", 0x0401}, {"bg_BG", 0x0402}, {"ca_ES", 0x0403}, {"zh_TW", 0x0404}, {"zh_CN", 0x0804}, {"zh_HK", 0x0C04},
    {"zh_SG", 0x1004}, {"cs_CZ", 0x0405}, {"da_DK", 0x0406}, {"de_DE", 0x0407}, {"de_CH", 0x0807}, {"de_AT", 0x0C07},
    {"el_GR", 0x0408}, {"en_US", 0x0409}, {"en_GB", 0x0809}, {"en_AU", 0x0C09}, {"en_CA", 0x1009}, {"en_NZ", 0x1409},
    {"en_IE", 0x1809}, {"es_ES", 0x0C0A}, {"es_MX", 0x080A}, {"fi_FI", 0x040B}, {"fr_FR", 0x040C}, {"fr_BE", 0x080C},
    {"fr_CA", 0x0C0C}, {"fr_CH", 0x100C}, {"he_IL", 0x040D}, {"hu_HU", 0x040E}, {"is_IS", 0x040F}, {"it_IT", 0x0410},
    {"it_CH", 0x0810}, {"ja_JP", 0x0411}, {"ko_KR", 0x0412}, {"nl_NL", 0x0413}, {"nl_BE", 0x0813}, {"nb_NO", 0x0414},
    {"nn_NO", 0x0814}, {"pl_PL", 0x0415}, {"pt_BR", 0x0416}, {"pt_PT", 0x0816}, {"ro_RO", 0x0418}, {"ru_RU", 0x0419},
    {"hr_HR", 0x041A}, {"sk_SK", 0x041B}, {"sq_AL", 0x041C}, {"sv_SE", 0x041D}, {"sv_FI", 0x081D}, {"th_TH", 0x041E},
    {"tr_TR", 0x041F}, {"uk_UA", 0x0422}, {"be_BY", 0x0423}, {"sl_SI", 0x0424}, {"et_EE", 0x0425}, {"lv_LV", 0x0426},
    {"lt_LT", 0x0427}, {"fa_IR", 0x0429}, {"vi_VN", 0x042A}, {"hi_IN", 0x0439},
};

/// The locale that messages are in, by the first of the three variables that is not empty.
std::string_view MessageLocale()
{
    for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        const char* const value = std::getenv(variable);  // NOLINT(concurrency-mt-unsafe): nothing here sets variables
        if (value != nullptr && *value != '\0') {
            return value;
        }
    }
    return {};
}

}  // namespace

std::uint16_t GetUserDefaultLangID() noexcept
{
    const std::string_view full = MessageLocale();
    const std::string_view locale = full.substr(0, full.find_first_of(".@"));
    const std::string_view language = locale.substr(0, locale.find('_'));
    std::uint16_t best = 0;
    for (const Language& row : kLanguages) {
        if (row.locale == locale) {
            return row.id;
        }
        if (best == 0 && row.locale.substr(0, row.locale.find('_')) == language) {
            best = row.id;
        }
    }
    return best == 0 ? kAmericanEnglish : best;
}

}  // namespace zupm

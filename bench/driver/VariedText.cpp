#include "bench/driver/VariedText.h"

#include "bench/Names.h"

namespace zupm::bench {

namespace {

constexpr const char* kWords[] = {"engine", "scan", "path", "update", "server", "a", "quarantine", "on", "exclusion"};
constexpr const char* kForeignWords[] = {"größe", "überprüfung", "политика", "ασφάλεια", "設定", "保護する", "مسار"};
constexpr const char* kSpecials[] = {"&amp;", "&lt;", "&#233;", "&quot;", "&#x20AC;"};

/// A number from 0 up to and without `limit`. The library's distributions may differ between libraries.
unsigned Draw(Chance& chance, std::size_t limit)
{
    return static_cast<unsigned>(chance() % limit);
}

template <std::size_t Size>
std::string Pick(Chance& chance, const char* const (&texts)[Size])
{
    return texts[Draw(chance, Size)];
}

std::string IrregularValue(Chance& chance)
{
    std::string text;
    for (unsigned words = Draw(chance, Draw(chance, 10) == 0 ? 60 : 8) + 1; words > 0; --words) {
        text += Pick(chance, kWords) + (Draw(chance, 8) == 0 ? Pick(chance, kSpecials) : " ");
    }
    return text;
}

std::string ForeignValue(Chance& chance)
{
    std::string text;
    for (unsigned words = Draw(chance, 6) + 2; words > 0; --words) {
        text += (Draw(chance, 10) < 7 ? Pick(chance, kForeignWords) : Pick(chance, kWords)) + " ";
    }
    return text;
}

std::string IrregularSetting(int number, Chance& chance)
{
    const std::string start = std::string(Draw(chance, 14), ' ') + "<Setting name=\"" + SettingName(number) + "\"";
    switch (Draw(chance, 8)) {
        case 0:
            return start + "/>\r\n";
        case 1:
            return "<!-- " + Pick(chance, kWords) + " -->" + start + ">" + IrregularValue(chance) + "</Setting>\n";
        case 2:
            return start + " note='" + IrregularValue(chance) + "'>" + IrregularValue(chance) + "</Setting >\r\n";
        default:
            return start + ">" + IrregularValue(chance) + "</Setting>\r\n";
    }
}

std::string Section(int number, const std::string& settings)
{
    return "        <Section name=\"Section" + std::to_string(number) + "\">\r\n" + settings + "        </Section>\r\n";
}

std::string Product(int number, const std::string& sections)
{
    return "      <Product SoftwareID=\"" + ProductName(number) + "\">\r\n" + sections + "      </Product>\r\n";
}

}  // namespace

std::string IrregularProductText(int number, Chance& chance)
{
    std::string sections;
    int setting = 0;
    const int count = static_cast<int>(Draw(chance, 5)) + 1;
    for (int section = 0; section < count; ++section) {
        std::string settings;
        for (unsigned left = Draw(chance, 30); left > 0; --left) {
            settings += IrregularSetting(setting++, chance);
        }
        sections += Section(section, settings);
    }
    return Product(number, sections);
}

std::string ForeignProductText(int number, Chance& chance)
{
    std::string settings;
    for (int setting = 0; setting < 40; ++setting) {
        settings +=
            "          <Setting name=\"" + SettingName(setting) + "\">" + ForeignValue(chance) + "</Setting>\r\n";
    }
    return Product(number, Section(0, settings));
}

}  // namespace zupm::bench

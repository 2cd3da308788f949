#include "tests/ini/IniCases.h"

#include <array>
#include <random>
#include <string_view>

namespace zupm::test {

namespace {

using namespace std::literals;

struct Row {
    std::string_view before;
    std::u16string_view section;
    std::u16string_view key;
    std::u16string_view value;
};

constexpr std::string_view kOld = "; mine\r\n[Before]\r\nkept=1\r\n\r\n[After]\r\nkept = 2\r\n";
constexpr std::string_view kTwice = "[S]\r\nk=1\r\nk=2\r\n[S]\r\nk=3\r\nm=4\r\n";
constexpr std::string_view kLoose = "a\r\n\r\n\r\nb\r\n[S]\r\n\r\n  k = 1  \r\n\r\n[T]\r\n";

constexpr Row kRows[] = {
    // names and values of every kind in an empty file
    {"", u"S", u"k", u"v"},
    {"", u"S", u"k", u""},
    {"", u"S", u"", u"v"},
    {"", u"S", u"", u""},
    {"", u"", u"k", u"v"},
    {"", u"", u"", u""},
    {"", u" S ", u" k ", u" v "},
    {"", u"\tS\t", u"\tk\t", u"\tv\t"},
    {"", u" ", u" ", u" "},
    {"", u"S", u"k", u"\"v\""},
    {"", u"S", u"k", u"'v'"},
    {"", u"S", u"k", u"\"v"},
    {"", u"S", u"k", u"v'"},
    {"", u"S", u"k", u"\"\""},
    {"", u"S", u"k", u"\" v \""},
    {"", u"S", u"k", u" \"v\" "},
    {"", u"S", u"k", u"a;b"},
    {"", u"S", u"k", u";b"},
    {"", u"S", u"k", u"[T]"},
    {"", u"S", u"k", u"=v="},
    {"", u"S", u"k", u"\x1A"},
    {"", u"S]x", u"k", u"v"},
    {"", u"S]", u"k", u"v"},
    {"", u"[S]", u"k", u"v"},
    {"", u";S", u"k", u"v"},
    {"", u"S=T", u"k", u"v"},
    {"", u"S", u"k=l", u"v"},
    {"", u"S", u"=", u"v"},
    {"", u"S", u";k", u"v"},
    {"", u"S", u"#k", u"v"},
    {"", u"S", u"[k", u"v"},
    {"", u"S", u"[k]", u"v"},
    {"", u"S", u"k]", u"v"},
    // an existing file with lines of somebody else
    {kOld, u"S", u"k", u"v"},
    {kOld, u"Before", u"k", u"v"},
    {kOld, u"BEFORE", u"KEPT", u"v"},
    {kOld, u"after", u"Kept", u"v"},
    {kOld, u"after", u"Kept", u"2"},
    {kOld, u"After", u"kept", u" 2"},
    {kOld, u"After", u"kept", u"2 "},
    {kOld, u" After ", u" kept ", u"3"},
    {kOld, u"", u"; mine", u"v"},
    {kOld, u"", u"k", u"v"},
    {kLoose, u"S", u"k", u"1"},
    {kLoose, u"S", u"k", u"2"},
    {kLoose, u"S", u"l", u"2"},
    {kLoose, u"T", u"l", u"2"},
    {"[S]\r\n; k=5\r\n;c = 1\r\nk\r\nj\r\n", u"S", u"k", u"2"},
    {"[S]\r\nk\r\n", u"S", u"k", u""},
    {"[S]\r\n;c = 1\r\n", u"S", u";c", u"2"},
    // duplicates
    {kTwice, u"S", u"k", u"9"},
    {kTwice, u"s", u"m", u"9"},
    {kTwice, u"S", u"n", u"9"},
    // line ends
    {"[S]\nk=1\n", u"S", u"k", u"2"},
    {"[S]\nk=1\n", u"S", u"k", u"1"},
    {"[S]\rk=1\r", u"S", u"k", u"2"},
    {"[S]\r\nk=1", u"S", u"k", u"2"},
    {"[S]\r\nk=1", u"S", u"l", u"2"},
    {"[S]\r\nk=1", u"T", u"l", u"2"},
    {"[S]\r\nk=1\r\n\x1A", u"T", u"l", u"2"},
    {"stray", u"S", u"k", u"v"},
    // headers of every kind
    {"[S\r\nk=1\r\n", u"S", u"k", u"2"},
    {"[S] x\r\nk=1\r\n", u"S", u"k", u"2"},
    {"  [ S ] ; x\r\nk=1\r\n", u"S", u"k", u"2"},
    {"[S]]\r\nk=1\r\n", u"S", u"k", u"2"},
    {"[S]]\r\nk=1\r\n", u"S]", u"k", u"2"},
    {"[S] ] x\r\nk=1\r\n", u"S]", u"k", u"2"},
    {"x=1\r\n[]\r\ny=2\r\n[S]\r\n", u"S", u"k", u"v"},
    {"x=1\r\n[]\r\ny=2\r\n[S]\r\n", u"", u"y", u"v"},
    // keys of every kind
    {"[S]\r\n=\r\n=\r\n = \r\n=a\r\n", u"S", u"q", u"1"},
    {"=x\r\n[S]\r\n=y\r\n", u"S", u"", u"2"},
    {"[S]\r\n[k]=1\r\n", u"S", u"[k]", u"2"},
    {"[S]\r\n[k=1\r\n", u"S", u"[k", u"2"},
    {"[S]\r\nk=l=1\r\n", u"S", u"k=l", u"2"},
    {"[S]\r\nk=\"1\"\r\n", u"S", u"k", u"1"},
    {"[S]\r\nk=\"1\"\r\n", u"S", u"k", u"\"1\""},
    {"[S]\r\nk=' 1 '\r\n", u"S", u"l", u"x"},
    {"[S ]\r\nk =1 \r\n", u"S ", u"k ", u"1 "},
    {"[S]\0x\r\nk=1\r\nl\0m=3\0n\r\n"sv, u"S", u"q", u"2"},
    {"a\0b\0"sv, u"S", u"k", u"v"},
    {"[S]\r\nk \0x=3\r\n"sv, u"S", u"k", u"2"},
    {"[S]\r\n[S \0x]\r\nk=3\r\n"sv, u"S", u"k", u"2"},
    // encodings
    {"\xEF\xBB\xBF", u"S", u"k", u"v"},
    {"\xEF\xBB\xBF[S]\r\nk=\xC3\xA4\r\n", u"S", u"l", u"v"},
    {"\xFE\xFF", u"S", u"k", u"\u5B9A\u671F"},
    {"\xFE\xFF\0[\0S\0]\0\r\0\n"sv, u"S", u"k", u"\u5B9A\u671F"},
    {"\xFF\xFE", u"S\u00FCd", u"\u5B9A", u"\U0001F5D3\u671F"},
    {"\xFF\xFE\xFF\xFE[\0S\0]\0"sv, u"S", u"k", u"v"},
};

/// Wide files: what ASCII lacks is no blank, and has no case.
struct WideRow {
    std::u16string_view before;
    std::u16string_view section;
    std::u16string_view key;
    std::u16string_view value;
};

constexpr WideRow kWideRows[] = {
    {u"[S]\r\n\u00E4=1\r\n", u"S", u"\u00C4", u"2"},
    {u"[S]\r\n\u00E4=1\r\n", u"S", u"\u00E4", u"2"},
    {u"[\u0436]\r\nk=1\r\n", u"\u0416", u"k", u"2"},
    {u"[S]\r\n\u212A=1\r\n", u"S", u"k", u"2"},
    {u"[S]\r\nk=\u00A0a\u3000\r\n", u"S", u"l", u"\u00A0b\u3000"},
    {u"[S]\r\nk\u2028=\u0085a\u2028\r\n", u"S", u"l\u0085", u"\u2028b\u0085"},
    {u"\uFEFF[S]\r\nk=1\r\n", u"S", u"k", u"\uFEFF2"},
    {u"[S]\nk=1", u"S", u"k", u"2"},
    {u"; c\r\n\r\n[S] x\r\n k = 1 \r\n", u"T", u"k", u"2"},
    {u"[S]\r\nk=\U0001F600\r\n", u"S", u"l", u"\U0001F600"},
};

/// Random texts that are the same on every target.
class Dice {
public:
    explicit Dice(unsigned seed) : m_numbers(seed) {}

    [[nodiscard]] std::size_t UpTo(std::size_t last) { return m_numbers() % (last + 1); }

    template <class Items>
    [[nodiscard]] auto Any(const Items& items)
    {
        return items[UpTo(std::size(items) - 1)];
    }

    /// Some of the pieces, one after the other.
    template <class Pieces>
    [[nodiscard]] std::u16string Text(const Pieces& pieces, std::size_t longest)
    {
        std::u16string text;
        for (std::size_t count = UpTo(longest); count > 0; --count) {
            text += Any(pieces);
        }
        return text;
    }

private:
    std::mt19937 m_numbers;
};

constexpr std::u16string_view kNamePieces[] = {u"S", u"s", u"k", u"K", u" ", u"\t", u"\x1A", u"[",
                                               u"]", u"=", u";", u"#", u"a", u"\"", u"'",    u"\v"};
constexpr std::u16string_view kWidePieces[] = {u"\u00E4", u"\u00C4", u"\u00A0", u"\u3000", u"\u5B9A", u"\uFEFF", u"S"};
constexpr std::u16string_view kNames[] = {u"S", u"s", u"k", u"K", u"T", u"", u" S", u"k "};
constexpr std::u16string_view kFilePieces[] = {
    u"[S]\r\n",  u"[s]\r\n", u"[T]\r\n", u"[",  u"]",       u"]\r\n",     u"k=1\r\n", u"K = 2\r\n",
    u";k=1\r\n", u"; c\n",   u"k\r\n",   u"=",  u"=\r\n",   u" ",         u"\t",      u"\r\n",
    u"\n",       u"\r",      u"S",       u"k",  u"1",       u"\"",        u"'",       u";",
    u"\x1A",     u"[]",      u"\v",      u"\f", u" =x\r\n", u"[ S ] x\n", {u"\0", 1}};

std::u16string Name(Dice& dice, bool isWide)
{
    std::u16string name = dice.UpTo(2) != 0 ? std::u16string(dice.Any(kNames)) : dice.Text(kNamePieces, 4);
    return isWide ? name + dice.Text(kWidePieces, 2) : name;
}

std::string Bytes(std::u16string_view text, bool isHighFirst)
{
    std::string bytes;
    for (const char16_t unit : text) {
        const char low = static_cast<char>(unit & 0xFF);
        const char high = static_cast<char>(unit >> 8);
        bytes.push_back(isHighFirst ? high : low);
        bytes.push_back(isHighFirst ? low : high);
    }
    return bytes;
}

IniCase RandomCase(Dice& dice)
{
    const std::size_t encoding = dice.UpTo(4);
    const bool isWide = encoding == 1 || encoding == 2;
    std::u16string text = dice.Text(kFilePieces, 20);
    if (isWide) {
        // The recording has the end drawn first.
        const std::u16string end = dice.Text(kFilePieces, 6);
        text += dice.Text(kWidePieces, 2) + end;
    }
    IniCase made{{}, Name(dice, isWide), Name(dice, isWide), Name(dice, isWide)};
    switch (encoding) {
        case 1:
            made.before = WideIni(text);
            break;
        case 2:
            made.before = "\xFE\xFF" + Bytes(text, true);
            break;
        case 3:
            made.before = "\xEF\xBB\xBF" + std::string(text.begin(), text.end());
            break;
        default:
            made.before = std::string(text.begin(), text.end());
            break;
    }
    return made;
}

}  // namespace

std::string WideIni(std::u16string_view text)
{
    return "\xFF\xFE" + Bytes(text, false);
}

std::vector<IniCase> RandomIniCases(unsigned seed, std::size_t count)
{
    Dice dice(seed);
    std::vector<IniCase> cases;
    while (cases.size() < count) {
        cases.push_back(RandomCase(dice));
    }
    return cases;
}

std::vector<IniCase> IniCases()
{
    std::vector<IniCase> cases{{std::nullopt, u"S", u"k", u"v"}};
    for (const Row& row : kRows) {
        cases.push_back(
            {std::string(row.before), std::u16string(row.section), std::u16string(row.key), std::u16string(row.value)});
    }
    for (const WideRow& row : kWideRows) {
        cases.push_back(
            {WideIni(row.before), std::u16string(row.section), std::u16string(row.key), std::u16string(row.value)});
    }
    const std::vector<IniCase> random = RandomIniCases(1, 400);
    cases.insert(cases.end(), random.begin(), random.end());
    return cases;
}

}  // namespace zupm::test

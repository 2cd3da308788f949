/// Texts that have wanted to be something else in an INI file.
#pragma once

#include <string_view>

namespace zupm::test {

struct IniText {
    const char* label;
    std::u16string_view text;
    bool asValue;    ///< may be a value; else it is refused
    bool asSection;  ///< may be the name of a section
    bool asKey;      ///< may be the name of a key
};

using namespace std::literals;

inline constexpr IniText kIniTexts[] = {
    {"plain", u"plain"sv, true, true, true},
    {"LF and a section", u"a\n[Evil]\nx=1"sv, false, false, false},
    {"CR and a key", u"a\rEvil=1"sv, false, false, false},
    {"CR LF and a section", u"a\r\n[Evil]\r\nx=1"sv, false, false, false},
    {"LF at the end", u"a\n"sv, false, false, false},
    {"CR at the beginning", u"\ra"sv, false, false, false},
    {"NEL inside", u"a\u0085Evil=1"sv, true, true, false},
    {"NEL at the end", u"a\u0085"sv, true, false, false},
    {"line separator inside", u"a\u2028[Evil]\u2028x"sv, true, false, true},
    {"line separator at the end", u"a\u2028"sv, true, false, false},
    {"paragraph separator inside", u"a\u2029b"sv, true, true, true},
    {"a section", u"[Evil]"sv, true, false, false},
    {"an opening bracket", u"[a"sv, true, true, false},
    {"a closing bracket", u"a]b"sv, true, false, true},
    {"an equals sign", u"a=b"sv, true, true, false},
    {"an equals sign at the beginning", u"=a"sv, true, true, false},
    {"a semicolon at the beginning", u";a"sv, true, true, false},
    {"a semicolon inside", u"a ; b"sv, true, true, true},
    {"a number sign at the beginning", u"#a"sv, true, true, true},
    {"one quote", u"\""sv, true, true, true},
    {"a pair of quotes", u"\"a\""sv, true, true, true},
    {"a pair of single quotes", u"'a'"sv, true, true, true},
    {"two pairs of quotes", u"\"\"a\"\""sv, true, true, true},
    {"nothing in quotes", u"\"\""sv, true, true, true},
    {"an opening quote", u"\"a"sv, true, true, true},
    {"a closing quote", u"a\""sv, true, true, true},
    {"different quotes", u"\"a'"sv, true, true, true},
    {"blanks inside quotes", u"\" a \""sv, true, true, true},
    {"a blank at the beginning", u" a"sv, true, false, false},
    {"a blank at the end", u"a "sv, true, false, false},
    {"blanks alone", u"   "sv, true, false, false},
    {"a tab at the end", u"a\t"sv, true, false, false},
    {"a tab inside", u"a\tb"sv, true, true, true},
    {"a no-break space at the end", u"a\u00A0"sv, true, false, false},
    {"an ideographic space at the beginning", u"\u3000a"sv, true, false, false},
    {"a byte order mark at the beginning", u"\uFEFFa"sv, true, false, false},
    {"letters of the code page", u"S\u00FCd"sv, true, true, true},
    {"letters outside of it", u"\u5B9A\u671F\u66F4\u65B0"sv, true, true, true},
    {"characters outside of the BMP", u"\U0001F5D3\U00010000"sv, true, true, true},
    {"a backslash at the end", u"C:\\"sv, true, true, true},
    {"a percent sign", u"%PATH%"sv, true, true, true},
    {"empty", u""sv, true, false, false},
};

/// Only fields that have never been in XML can hold these.
inline constexpr IniText kControlTexts[] = {
    {"NUL inside", u"a\0[Evil]"sv, false, false, false},
    {"NUL at the end", u"a\0"sv, false, false, false},
    {"end of file in the old way", u"a\u001A"sv, true, false, false},
    {"a vertical tab at the end", u"a\v"sv, true, false, false},
    {"a form feed at the beginning", u"\fa"sv, true, false, false},
};

}  // namespace zupm::test

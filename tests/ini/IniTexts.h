/// Texts that a reader of an INI file could take for something else.
#pragma once

#include <string_view>

namespace zupm::test {

struct IniText {
    const char* label;
    std::u16string_view text;
    bool isTaken;  ///< otherwise it is refused: as a value, as a section and as a key
};

using namespace std::literals;

inline constexpr IniText kIniTexts[] = {
    {"plain", u"plain"sv, true},
    {"LF and a section", u"a\n[Evil]\nx=1"sv, false},
    {"CR and a key", u"a\rEvil=1"sv, false},
    {"CR LF and a section", u"a\r\n[Evil]\r\nx=1"sv, false},
    {"LF at the end", u"a\n"sv, false},
    {"CR at the beginning", u"\ra"sv, false},
    {"NEL inside", u"a\u0085Evil=1"sv, true},
    {"NEL at the end", u"a\u0085"sv, true},
    {"line separator inside", u"a\u2028[Evil]\u2028x"sv, true},
    {"line separator at the end", u"a\u2028"sv, true},
    {"paragraph separator inside", u"a\u2029b"sv, true},
    {"a section", u"[Evil]"sv, true},
    {"an opening bracket", u"[a"sv, true},
    {"a closing bracket", u"a]b"sv, true},
    {"an equals sign", u"a=b"sv, true},
    {"an equals sign at the beginning", u"=a"sv, true},
    {"a semicolon at the beginning", u";a"sv, true},
    {"a semicolon inside", u"a ; b"sv, true},
    {"a number sign at the beginning", u"#a"sv, true},
    {"one quote", u"\""sv, true},
    {"a pair of quotes", u"\"a\""sv, true},
    {"a pair of single quotes", u"'a'"sv, true},
    {"two pairs of quotes", u"\"\"a\"\""sv, true},
    {"nothing in quotes", u"\"\""sv, true},
    {"an opening quote", u"\"a"sv, true},
    {"a closing quote", u"a\""sv, true},
    {"different quotes", u"\"a'"sv, true},
    {"blanks inside quotes", u"\" a \""sv, true},
    {"a blank at the beginning", u" a"sv, true},
    {"a blank at the end", u"a "sv, true},
    {"blanks alone", u"   "sv, true},
    {"a tab at the end", u"a\t"sv, true},
    {"a tab inside", u"a\tb"sv, true},
    {"a no-break space at the end", u"a\u00A0"sv, true},
    {"an ideographic space at the beginning", u"\u3000a"sv, true},
    {"a byte order mark at the beginning", u"\uFEFFa"sv, true},
    {"letters of the code page", u"S\u00FCd"sv, true},
    {"letters outside of it", u"\u5B9A\u671F\u66F4\u65B0"sv, true},
    {"characters outside of the BMP", u"\U0001F5D3\U00010000"sv, true},
    {"a backslash at the end", u"C:\\"sv, true},
    {"a percent sign", u"%PATH%"sv, true},
    {"empty", u""sv, true},
};

/// Only fields that have never been in XML can hold these.
inline constexpr IniText kControlTexts[] = {
    {"NUL inside", u"a\0[Evil]"sv, false},
    {"NUL at the end", u"a\0"sv, false},
    {"end of file in the old way", u"a\u001A"sv, true},
    {"a vertical tab at the end", u"a\v"sv, true},
    {"a form feed at the beginning", u"\fa"sv, true},
};

}  // namespace zupm::test

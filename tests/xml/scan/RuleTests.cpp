// Every rule that the scanner checks: texts that keep it, texts that break it. The gate has the last word on all of
// them.
#include <gtest/gtest.h>

#include "tests/xml/scan/GateAgreement.h"

namespace AdvXMLParser {
namespace {

using namespace std::string_view_literals;

struct Rule {
    std::string_view name;
    std::vector<std::string_view> kept;
    std::vector<std::string_view> broken;
};

const std::vector<Rule>& Rules()
{
    static const std::vector<Rule> rules = {
        {"a document is one element",
         {"<a/>", "<a></a>", "<a/> \t\r\n", " \n<a/>", "<!-- c --><a/><!-- d -->", "<?p d?><a/><?q?>"},
         {"",
          " ",
          "text",
          "<",
          "<a",
          "<a/>x",
          "x<a/>",
          "<a/><b/>",
          "<a></a><a></a>",
          "<a/>&amp;",
          "&lt;<a/>",
          "&a/>",
          ">a/>",
          "'a></a>",
          "\"a></a>",
          "<!-- c -->",
          "<a/><![CDATA[x]]>",
          "<![CDATA[x]]><a/>",
          "<a/>\0"sv,
          "<a/>>",
          "</a>",
          "<a/></a>",
          "<a/>\"",
          "\xEF\xBB\xBF<a/>"}},
        {"the end tag is that of the innermost element",
         {"<a><b></b></a>", "<a></a >", "<a></a\r\n\t>", "<ab></ab>", "<a><a></a></a>", "<abcdefghij></abcdefghij>"},
         {"<a>", "<a><b></a></b>", "<a></b>", "<a></ab>", "<ab></a>", "<a></ a>", "<a></a", "<a></a b>", "<a></a/>",
          "<a></>", "<a></", "<a><b></a>", "<a></A>", "<a></a b='1'>", "<abcdefghij></abcdefghiJ>", "<abcd></abce>",
          "<a><b></bc></a>", "<a><b></b/></a>"}},
        {"a name begins with a name start character",
         {"<_/>", "<:/>", "<a:b/>", "<a-.0/>", "<Z9/>", "<\xC3\xA4/>", "<a\xC2\xB7/>", "<\xE4\xB8\x80/>", "<a:b:c/>",
          "<a::/>"},
         {"<1/>", "<-a/>", "<.a/>", "< a/>", "<\xC2\xB7/>", "<\xC3\x97/>", "<a\xC3\x97/>", "<\xF0\x9F\x98\x80/>",
          "<a\xF0\x90\x80\x80/>", "<a!/>", "<=/>", "<a\xC3/>", "<a\xE4\xB8/>"}},
        {"an attribute has a quoted value",
         {"<a b=''/>", "<a b=\"\"/>", "<a b = '1'/>", "<a\tb\r\n=\n'1'\t/>", "<a b='\"'/>", "<a b=\"'\"/>",
          "<a b='>'/>", "<a b='\r\n\t'/>", "<a b='1'></a>", "<a><b c='1'></b><b c='\">'></b></a>", "<a b='/'/>",
          "<a b='/'></a>"},
         {"<a b/>", "<a b=/>", "<a b=1/>", "<a b='1/>", "<a b='1\"/>", "<a b=\"1'/>", "<a ='1'/>", "<a '1'/>",
          "<a b=='1'/>", "<a b='1'", "<a b='", "<a b=", "<a b", "<a b='1'>", "<a 1='1'/>", "<a b=&quot;1&quot;/>",
          "<a b=&1&/>", "<a b=>1>/>", "<a b!'1'/>"}},
        {"white space separates attributes",
         {"<a b='1' c='2'/>", "<a b='1'\nc='2'/>", "<a  b='1'  c='2'  />", "<a />", "<a\n></a>"},
         {"<a b='1'c='2'/>", "<ab='1'/>", "<a / >", "<a/ >", "<a b='1'/ >", "<a b='1'//>", "<a/b='1'>", "<a/", "<a/b",
          "<a/ ></a>", "<a b='1'/c='2'>"}},
        {"no two attributes of an element have the same name",
         {"<a b='1' B='1'/>", "<a b='1'><a b='1'/></a>", "<a b='1' bc='1'/>", "<a x:b='' b='' y:b=''/>"},
         {"<a b='1' b='1'/>", "<a b='1' c='2' b='3'/>", "<a b='' c='' d='' e='' f='' c=''/>"}},
        {"an attribute's value holds no '<'",
         {"<a b='&lt;'/>", "<a b='>'/>"},
         {"<a b='<'/>", "<a b='<c/>'/>", "<a b=\"<\"/>", "<a b='1' c='<'/>"}},
        {"a reference is one of five or names a character",
         {"<a>&amp;&lt;&gt;&quot;&apos;</a>", "<a b='&amp;&lt;&gt;&quot;&apos;'/>", "<a>&#65;&#x41;&#x4a;</a>",
          "<a>&#9;&#10;&#13;&#32;</a>", "<a>&#xD7FF;&#xE000;&#xFFFD;&#x10000;&#x10FFFF;</a>",
          "<a>&#00000000000000000000000000000000065;</a>", "<a b='&#x000041;'/>", "<a>&#128512;&#xfFfD;</a>"},
         {"<a>&</a>",
          "<a>& </a>",
          "<a>&amp</a>",
          "<a>&amp ;</a>",
          "<a>&AMP;</a>",
          "<a>&nbsp;</a>",
          "<a>&;</a>",
          "<a>&#;</a>",
          "<a>&#x;</a>",
          "<a>&#X41;</a>",
          "<a>&#6a;</a>",
          "<a>&#xG;</a>",
          "<a>&#65</a>",
          "<a>&#0;</a>",
          "<a>&#8;</a>",
          "<a>&#11;</a>",
          "<a>&#31;</a>",
          "<a>&#xD800;</a>",
          "<a>&#xDFFF;</a>",
          "<a>&#xFFFE;</a>",
          "<a>&#xFFFF;</a>",
          "<a>&#x110000;</a>",
          "<a>&#4294967361;</a>",
          "<a>&#x100000041;</a>",
          "<a>&#99999999999999999999999;</a>",
          "<a b='&'/>",
          "<a b='&e;'/>",
          "<a b='&#0;'/>",
          "<a b='1' c='&e;'/>",
          "<a>&a",
          "<a>&#",
          "<a>&#x",
          "<a>&"}},
        {"text holds no \"]]>\"",
         {"<a>]]</a>", "<a>]>]</a>", "<a>></a>", "<a>]]&gt;</a>", "<a b=']]>'/>", "<a>]] ></a>", "<a>\"'>\"</a>",
          "<a><b>></b><b>>></b></a>", "<a><b>></b><b>>>></b></a>", "<a><![CDATA[]]>></a>", "<a>]]<b/>></a>",
          "<a><!--]]>--></a>", "<a><?p ]]>?></a>"},
         {"<a>]]></a>", "<a>x]]>y</a>", "<a>]]]></a>", "<a><b/>]]></a>", "<a><![CDATA[]]>]]></a>"}},
        {"a CDATA section ends with \"]]>\"",
         {"<a><![CDATA[]]></a>", "<a><![CDATA[<b>&c;</d>]]></a>", "<a><![CDATA[]]]></a>", "<a><![CDATA[]]]]></a>",
          "<a><![CDATA[<![CDATA[]]></a>", "<a><![CDATA[]>]]></a>", "<a><![CDATA['\"]]>x</a>"},
         {"<a><![CDATA[</a>", "<a><![CDATA[]]</a>", "<a><![CDATA[]></a>", "<a><![CDATA[]] ></a>", "<a><![cdata[]]></a>",
          "<a><![CDATA []]></a>", "<a><! [CDATA[]]></a>", "<a><![CDATA]]></a>", "<a><![", "<a><![CDATA[\x01]]></a>"}},
        {"a comment holds no \"--\"",
         {"<a><!----></a>", "<a><!-- - --></a>", "<a><!-- <b> & ]]> --></a>", "<a><!-->--></a>", "<a><!--->--></a>",
          "<!--'--><a/>", "<a><!-- \"--></a>"},
         {"<a><!-- -- --></a>", "<a><!-----></a>", "<a><!-- ---></a>", "<a><!--></a>", "<a><!---></a>", "<a><!-- </a>",
          "<a><!-- --></a", "<a><!- - --></a>", "<a><! -- --></a>", "<!-- --", "<!--", "<a/><!-- -",
          "<a><!-- \xFF --></a>", "<a><!", "<a><!-"}},
        {"a processing instruction has a name that is not reserved",
         {"<?p?><a/>", "<a><?p <b> & ?></a>", "<a><?p  ? > ?></a>", "<a><?p ?\?></a>", "<?xm?><a/>", "<?xmlx?><a/>",
          "<?xmk?><a/>", "<?xml-x y?><a/>", "<?p:q?><a/>", "<a/><?xMlx ?>", "<?\xC3\xA4?><a/>"},
         {"<?\?><a/>", "<? p?><a/>", "<?1?><a/>", "<?p", "<?p ", "<?p ?", "<?p?", "<?p? ?><a/>", "<?p><a/>",
          "<?p>?><a/>", "<?xml?><a/>", "<?XML?><a/>", "<?xMl y?><a/>", "<a><?xml version='1.0'?></a>",
          "<a/><?xml version='1.0'?>", "<a><?Xml?></a>", "<?p/?><a/>", "<a><?p \xC3?></a>", "<a><?</a>"}},
        {"the XML declaration comes first and is version 1.0",
         {"<?xml version='1.0'?><a/>", "<?xml version=\"1.0\" ?><a/>", "<?xml\tversion\n=\r'1.0'?><a/>",
          "<?xml version='1.0' encoding='UTF-8'?><a/>", "<?xml version='1.0' encoding=\"x-.9_\"?><a/>",
          "<?xml version='1.0' standalone='yes'?><a/>", "<?xml version='1.0' encoding='UTF-16' standalone='no'?>\n<a/>",
          "<?xml version='1.0'?>\n<!-- c --><a/>"},
         {" <?xml version='1.0'?><a/>",
          "<!-- c --><?xml version='1.0'?><a/>",
          "<?xml ?><a/>",
          "<?xml encoding='UTF-8'?><a/>",
          "<?xml version='1.1'?><a/>",
          "<?xml version='2.0'?><a/>",
          "<?xml version='1.00'?><a/>",
          "<?xml version=''?><a/>",
          "<?xml version=1.0?><a/>",
          "<?xml version='1.0\"?><a/>",
          "<?xml version='1.0'encoding='UTF-8'?><a/>",
          "<?xml version='1.0' encoding=''?><a/>",
          "<?xml version='1.0' encoding='8'?><a/>",
          "<?xml version='1.0' encoding='a b'?><a/>",
          "<?xml version='1.0' encoding='a{'?><a/>",
          "<?xml version='1.0' encoding='\xC3\xA4'?><a/>",
          "<?xml version='1.0' standalone='maybe'?><a/>",
          "<?xml version='1.0' standalone=''?><a/>",
          "<?xml version='1.0' standalone='YES'?><a/>",
          "<?xml version='1.0' standalone='yes' encoding='UTF-8'?><a/>",
          "<?xml version='1.0' version='1.0'?><a/>",
          "<?xml version='1.0' x='1'?><a/>",
          "<?xml version='1.0'><a/>",
          "<?xml version='1.0'? ><a/>",
          "<?xml version='1.0'",
          "<?xml version='1.0'?><?xml version='1.0'?><a/>",
          "<?XML version='1.0'?><a/>",
          "<?xml VERSION='1.0'?><a/>",
          "<?xml",
          "<?xml ",
          "<?xml version",
          "<?xml version=",
          "<?xml version='1.0",
          "<?xml version='1.0'?",
          "<?xml version='1.0' encoding='UTF-8"}},
        {"every character is one that XML can hold",
         {"<a>\t\r\n\x7F</a>", "<a>\xC2\x80\xC2\x85\xC2\x9F</a>", "<a>\xED\x9F\xBF\xEE\x80\x80\xEF\xBF\xBD</a>",
          "<a>\xF0\x90\x80\x80\xF4\x8F\xBF\xBF</a>", "<a>\xEF\xBB\xBF</a>", "<a>\xF0\x9F\xBF\xBE</a>",
          "<a b='\xE2\x82\xAC'/>"},
         {"<a>\0</a>"sv, "<a>\x01</a>", "<a>\x08</a>", "<a>\x0B</a>", "<a>\x0C</a>", "<a>\x0E</a>", "<a>\x1F</a>",
          "<a>\xEF\xBF\xBE</a>", "<a>\xEF\xBF\xBF</a>", "<a b='\x02'/>", "<!--\x03--><a/>", "<a/><!--\x03-->",
          "<a/><?p \x03?>", "<?p \x04?><a/>"}},
        {"every character is valid UTF-8",
         {"<a>\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80</a>"},
         {"<a>\x80</a>",
          "<a>\xBF</a>",
          "<a>\xC0\x80</a>",
          "<a>\xC1\xBF</a>",
          "<a>\xC3</a>",
          "<a>\xC3\xC3\xA4</a>",
          "<a>\xE0\x80\x80</a>",
          "<a>\xE0\x9F\xBF</a>",
          "<a>\xE2\x82</a>",
          "<a>\xE2</a>",
          "<a>\xED\xA0\x80</a>",
          "<a>\xED\xBF\xBF</a>",
          "<a>\xF0\x80\x80\x80</a>",
          "<a>\xF0\x8F\xBF\xBF</a>",
          "<a>\xF0\x9F\x98</a>",
          "<a>\xF4\x90\x80\x80</a>",
          "<a>\xF5\x80\x80\x80</a>",
          "<a>\xFF</a>",
          "<a>\xFE</a>",
          "<a>\xC3\xA4\xA4</a>",
          "<a/>\xC3",
          "<a/><!--\xC3-->",
          "<a/>\xE2\x82",
          "<a/>\xF0\x9F\x98"}},
    };
    return rules;
}

/// The text after white space, so that its places move within a block.
constexpr std::size_t kShifts = 65;

std::string Shifted(std::string_view text, std::size_t blanks)
{
    return std::string(blanks, ' ').append(text);
}

TEST(ScannerRules, AreKept)
{
    for (const Rule& rule : Rules()) {
        for (const std::string_view text : rule.kept) {
            const Agreement agreement = CompareWithGate(std::string(text));
            EXPECT_TRUE(agreement.isAcceptedByScanner) << rule.name << ": " << text;
            EXPECT_EQ(agreement.difference, "") << rule.name << ": " << text;
        }
    }
}

TEST(ScannerRules, AreBroken)
{
    for (const Rule& rule : Rules()) {
        for (const std::string_view text : rule.broken) {
            const Agreement agreement = CompareWithGate(std::string(text));
            EXPECT_FALSE(agreement.isAcceptedByScanner) << rule.name << ": " << text;
            EXPECT_FALSE(agreement.isAcceptedByGate) << rule.name << ": " << text;
            EXPECT_EQ(agreement.difference, "") << rule.name << ": " << text;
        }
    }
}

TEST(ScannerRules, HoldAtEveryPlaceOfABlock)
{
    for (const Rule& rule : Rules()) {
        for (std::size_t blanks = 1; blanks <= kShifts; blanks += 16) {
            for (const std::string_view text : rule.broken) {
                const Agreement agreement = CompareWithGate(Shifted(text, blanks));
                EXPECT_FALSE(agreement.isAcceptedByScanner) << blanks << " blanks, then " << text;
                EXPECT_EQ(agreement.difference, "") << blanks << " blanks, then " << text;
            }
        }
    }
}

TEST(ScannerRules, ADocumentWithADoctypeIsPassedOn)
{
    for (const char* text :
         {"<!DOCTYPE a><a/>", "<!DOCTYPE a SYSTEM 'x'><a>t<b/></a>", "<!DOCTYPE a [<!ELEMENT a ANY>]><a>t</a>"}) {
        const Agreement agreement = CompareWithGate(text);
        EXPECT_FALSE(agreement.isAcceptedByScanner) << text;
        EXPECT_TRUE(agreement.isAcceptedByGate) << text;
        EXPECT_EQ(agreement.difference, "") << text;
    }
}

}  // namespace
}  // namespace AdvXMLParser

#include "OddFiles.h"

#include "OddFileParts.h"

namespace zupm::test {

namespace {

std::vector<OddFile> Encodings()
{
    const std::string utf8 = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
    const std::string utf16 = "<?xml version=\"1.0\" encoding=\"UTF-16\"?>\n";
    const std::string latin1 = "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\n";
    const std::string text = "<Note>G\u00FC\u00DF\u20AC \U0001F600</Note>";
    const std::string narrow = "<Note t=\"\u00E9\">G\u00FC\u00DF \u0085 &#8364;</Note>";
    return {
        {"Utf8", Form::Utf8, Document("", text)},
        {"Utf8Declared", Form::Utf8, Document(utf8, text)},
        {"Utf8DeclaredInLowerCase", Form::Utf8, Document("<?xml version=\"1.0\" encoding=\"utf-8\"?>", text)},
        {"Utf8Signed", Form::Utf8Signed, Document("", text)},
        {"Utf8SignedAndDeclared", Form::Utf8Signed, Document(utf8, text)},
        {"Utf16LittleEndianSigned", Form::Utf16LeSigned, Document("", text)},
        {"Utf16LittleEndianSignedAndDeclared", Form::Utf16LeSigned, Document(utf16, text)},
        {"Utf16BigEndianSigned", Form::Utf16BeSigned, Document("", text)},
        {"Utf16BigEndianSignedAndDeclared", Form::Utf16BeSigned, Document(utf16, text)},
        {"Utf16LittleEndianDeclared", Form::Utf16Le, Document(utf16, text)},
        {"Utf16BigEndianDeclared", Form::Utf16Be, Document(utf16, text)},
        {"Latin1", Form::Latin1, Document(latin1, narrow)},
        {"Latin1DeclaredInLowerCase", Form::Latin1,
         Document("<?xml version='1.0' encoding='iso-8859-1' standalone='yes'?>", narrow)},
        {"Utf16WithCrLfCommentsAndCdata", Form::Utf16LeSigned,
         Document("<?xml version=\"1.0\" encoding=\"UTF-16\"?>\r\n<!-- \u00E4 -->\r\n",
                  "\r\n\t<![CDATA[\U0001F600 <&> ]]>\r\n")},
    };
}

std::vector<OddFile> LineEnds()
{
    return {
        {"CrLf", Form::Utf8, Document("<?xml version=\"1.0\"?>\r\n", "\r\n  <Note>\r\n  </Note>\r\n", "\r\n")},
        {"CrOnly", Form::Utf8, Document("<?xml version=\"1.0\"?>\r", "\r  <Note>\r  </Note>\r", "\r")},
        {"MixedLineEnds", Form::Utf8, Document("<?xml version=\"1.0\"?>\r\n", "\n<Note>\r\r\n\n</Note>\r", "\n\r\n")},
        {"LineEndsInValue", Form::Utf8, WithValue("a\r\nb\rc\nd"), u"a\nb\nc\nd"},
        {"Tabs", Form::Utf8, Document("", "\n\t<Note>\n\t\t<N/>\n\t</Note>\n")},
        {"NoLineEndAtTheEnd", Form::Utf8, Document("<?xml version=\"1.0\"?>", "", "")},
        {"BlankLinesAround", Form::Utf8, Document("\n\n  \n", "\n\n\n", "\n\n   \n\n")},
        {"BlanksAtLineEnds", Form::Utf8, Document("", "  \n<Note>  \n</Note> \t \n")},
        {"VeryLongLine", Form::Utf8, Document("", "<Note>" + std::string(300'000, 'x') + "</Note>")},
        {"ManyLines", Form::Utf8, Document("", std::string(20'000, '\n'))},
    };
}

std::vector<OddFile> Tags()
{
    return {
        {"SingleQuotes", Form::Utf8,
         ReplaceOnce(ReplaceAll(Document("<?xml version='1.0'?>", ""), "\"", "'"), "</PolicyRoot>",
                     "<N a='\"'/></PolicyRoot>")},
        {"BlanksAroundEquals", Form::Utf8, ReplaceAll(Document("", "<N a = 'b'/>"), "=\"", " \t= \"")},
        {"GreaterThanInAttribute", Form::Utf8, Document("", "<N a=\"1>2\" b='/>'>x > y</N>")},
        {"LineEndInAttribute", Form::Utf8, Document("", "<N a=\"one\ntwo\tthree\r\nfour\"/>")},
        {"AttributesAcrossLines", Form::Utf8, ReplaceAll(Document("", ""), "\" ", "\"\r\n      ")},
        {"BlanksInEndTags", Form::Utf8, ReplaceAll(Document("", "<N></N\t>"), "</Section>", "</Section  >")},
        {"EndTagsAcrossLines", Form::Utf8, ReplaceAll(Document("", ""), "</Setting>", "</Setting\n \t>")},
        {"BlanksAfterTheLastAttribute", Form::Utf8, ReplaceAll(Document("", ""), "\">", "\"  \n>")},
        {"EmptyElementsInAllForms", Form::Utf8, Document("", "<a/><a /><a\n/><a></a><a b=''/><a b=\"\" ></a>")},
        {"NonAsciiNames", Form::Utf8,
         Document("", "<\u0444\u0430\u0439\u043B \u00E9t\u00E9=\"1\">x</\u0444\u0430\u0439\u043B>")},
        {"Namespaces", Form::Utf8,
         Document("", "<n:Note xmlns:n=\"urn:n\" n:a=\"1\"><n:b/></n:Note><Note xmlns=\"urn:d\"/>")},
        {"XmlAttributes", Form::Utf8, Document("", "<N xml:space=\"preserve\" xml:lang='de'>  </N>")},
        {"ManyAttributes", Form::Utf8, Document("", ManyAttributes(2'000))},
        {"DeepElements", Form::Utf8, Document("", Nested(5'000))},
    };
}

std::vector<OddFile> Values()
{
    return {
        {"Cdata", Form::Utf8, WithValue("<![CDATA[<a> & ]] > ]]>"), u"<a> & ]] > "},
        {"CdataBesideText", Form::Utf8, WithValue("]]&gt;<![CDATA[]]]]><![CDATA[>]]>]]&gt;"), u"]]>]]>]]>"},
        {"EmptyCdata", Form::Utf8, WithValue("<![CDATA[]]>"), u""},
        {"DecimalReferences", Form::Utf8, WithValue("&#72;&#0105;&#128512;"), u"Hi\U0001F600"},
        {"HexadecimalReferences", Form::Utf8, WithValue("&#x48;&#x0069;&#x1F600;&#x1f600;"), u"Hi\U0001F600\U0001F600"},
        {"PredefinedEntities", Form::Utf8, WithValue("&lt;&gt;&amp;&apos;&quot;"), u"<>&'\""},
        {"QuotesUnescaped", Form::Utf8, WithValue("'\" > "), u"'\" > "},
        {"ReferencesToWhiteSpace", Form::Utf8, WithValue("&#13;&#10;&#9;&#32;"), u"\r\n\t "},
        {"ReferencesInKeys", Form::Utf8,
         ReplaceAll(Document("", ""), "SoftwareID=\"P1\"", "SoftwareID=\"&#80;&#x31;\"")},
        {"ReferencesInVersions", Form::Utf8, ReplaceAll(Document("", ""), "version=\"12\"", "version=\"&#49;&#x32;\"")},
        {"CommentInsideValue", Form::Utf8, WithValue("a<!-- no -->b"), u"ab"},
        {"InstructionInsideValue", Form::Utf8, WithValue("a<?no thing?>b"), u"ab"},
        {"ElementInsideValue", Form::Utf8, WithValue("a<b>no</b>c"), u"ac"},
        {"AstralValue", Form::Utf8, WithValue("\U00010000\U0010FFFD"), u"\U00010000\U0010FFFD"},
        {"UnusualCharacters", Form::Utf8, WithValue("\u007F\u0085\u2028\uE000\uFFFD\uFEFF"),
         u"\u007F\u0085\u2028\uE000\uFFFD\uFEFF"},
        {"BlanksOnly", Form::Utf8, WithValue(" \t "), u" \t "},
        {"EmptyValue", Form::Utf8, WithValue(""), u""},
    };
}

std::vector<OddFile> Markup()
{
    return {
        {"Standalone", Form::Utf8, Document("<?xml version=\"1.0\" standalone=\"yes\"?>", "")},
        {"NotStandalone", Form::Utf8, Document("<?xml version='1.0' encoding=\"UTF-8\"  standalone = 'no' ?>", "")},
        {"Comments", Form::Utf8,
         Document("<!-- - a - b -> <PolicyRoot> ]]> & -->", "<!----><!-- <x -->", "<!-- end -->")},
        {"CommentsAfterTheRoot", Form::Utf8, Document("", "", "\n<!-- one -->\r\n<!-- two -->\n<?three?>\n")},
        {"Instructions", Form::Utf8,
         Document("<?xml version=\"1.0\"?><?xml-stylesheet href=\"a.xsl\"?>", "<?empty?><?php <a> & ?>", "<?end ?>")},
        {"Doctype", Form::Utf8, Document("<!DOCTYPE PolicyFile>\n", "")},
        {"DoctypeWithEmptySubset", Form::Utf8, Document("<!DOCTYPE PolicyFile [ ]>\n", "")},
        {"DoctypeWithDeclarations", Form::Utf8,
         Document("<!DOCTYPE PolicyFile [\n  <!ELEMENT PolicyFile ANY>\n  <!-- > ]> -->\n  <?pi ]>?>\n"
                  "  <!NOTATION n SYSTEM \"]>\">\n]>\n",
                  "")},
        {"DoctypeWithAttributeDefaults", Form::Utf8,
         Document("<!DOCTYPE PolicyFile [<!ATTLIST Setting extra CDATA 'x' name CDATA #IMPLIED>]>", "")},
        {"DoctypeWithExternalSubset", Form::Utf8, Document("<!DOCTYPE PolicyFile SYSTEM \"no-such-file.dtd\">", "")},
        {"DoctypeWithPublicIdentifier", Form::Utf8,
         Document("<!DOCTYPE PolicyFile PUBLIC '-//X//Y//EN' \"no-such-file.dtd\">", "")},
        {"TextBetweenElements", Form::Utf8, Document("", "stray text &amp; more")},
        {"UnknownElements", Form::Utf8, Document("", "<policyroot version='3'/><Policy/><Product SoftwareID='P1'/>")},
        {"DuplicateKeys", Form::Utf8,
         Document("", ReplaceAll(kPolicies, ">V<", ">second<") +
                          "<TaskRoot version=\"@\"><TaskGroup SoftwareID=\"P1\" "
                          "TaskID=\"T1\"><Task/><Task a='b'/></TaskGroup></TaskRoot>")},
        {"GroupsWithoutContent", Form::Utf8,
         Document("", "<PolicyRoot version=\"12\"><PolicyGroup Path=\"\"/><PolicyGroup Path=\"x\"/></PolicyRoot>")},
    };
}

std::vector<OddFile> MakeOddFiles()
{
    std::vector<OddFile> all;
    for (std::vector<OddFile> part : {Encodings(), LineEnds(), Tags(), Values(), Markup()}) {
        all.insert(all.end(), part.begin(), part.end());
    }
    return all;
}

}  // namespace

const std::vector<OddFile>& OddFiles()
{
    static const std::vector<OddFile> files = MakeOddFiles();
    return files;
}

void PrintTo(const OddFile& file, std::ostream* out)
{
    *out << file.label;
}

std::string BytesOf(const OddFile& file, std::string_view taskVersion)
{
    return Encode(ReplaceAll(file.text, "@", taskVersion), file.form);
}

}  // namespace zupm::test

#include "tests/xml/scan/Mutations.h"

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <iterator>
#include <optional>
#include <string_view>

#include "platform/Files.h"
#include "xml/Encoding.h"

namespace AdvXMLParser {

namespace {

constexpr std::size_t kLongestSeed = 4096;
constexpr std::uint64_t kMostMutations = 3;

using namespace std::string_view_literals;

/// What mutations put in.
constexpr std::string_view kPieces[] = {
    "<"sv,
    ">"sv,
    "&"sv,
    "\""sv,
    "'"sv,
    "="sv,
    "/"sv,
    "!"sv,
    "?"sv,
    "-"sv,
    "--"sv,
    "]"sv,
    "]]>"sv,
    "["sv,
    " "sv,
    "\t"sv,
    "\r\n"sv,
    "\r"sv,
    ":"sv,
    "_"sv,
    "0"sv,
    "a"sv,
    ";"sv,
    "#"sv,
    "x"sv,
    "<a>"sv,
    "</a>"sv,
    "<a/>"sv,
    "<!--"sv,
    "-->"sv,
    "<![CDATA["sv,
    "<?a b?>"sv,
    "<?xml"sv,
    "?>"sv,
    "<?XML?>"sv,
    "<!-- c -->"sv,
    "&amp;"sv,
    "&lt;"sv,
    "&quot;"sv,
    "&#65;"sv,
    "&#x41;"sv,
    "&#0;"sv,
    "&#xFFFE;"sv,
    "&#x10FFFF;"sv,
    "&#x110000;"sv,
    "&#xD800;"sv,
    "&e;"sv,
    "&#;"sv,
    "&#x;"sv,
    " a='1'"sv,
    " b=\"2\""sv,
    " a='<'"sv,
    "\0"sv,
    "\x01"sv,
    "\x7F"sv,
    "\x80"sv,
    "\xC2\x80"sv,
    "\xC3\xA4"sv,
    "\xC0\x80"sv,
    "\xCC\x81"sv,
    "\xE2\x82\xAC"sv,
    "\xE0\x80\x80"sv,
    "\xED\xA0\x80"sv,
    "\xEF\xBF\xBE"sv,
    "\xEF\xBF\xBF"sv,
    "\xEF\xBF\xBD"sv,
    "\xEF\xBB\xBF"sv,
    "\xF0\x9F\x98\x80"sv,
    "\xF4\x90\x80\x80"sv,
    "\xF0\x80\x80\x80"sv,
    "\xF5\x80\x80\x80"sv,
    "\xE4\xB8\x80"sv,
    "\xC2"sv,
    "\xE2\x82"sv,
    "\xF0\x9F\x98"sv,
    "<?xml version='1.0'?>"sv,
    " version='1.0'"sv,
    " encoding='UTF-8'"sv,
    " standalone='yes'"sv,
    "<!DOCTYPE a>"sv,
    "xmlns:a='u'"sv,
};

/// What may follow a tag in the content of an element: a document that gets one stays well-formed.
constexpr std::string_view kContents[] = {
    "x"sv,
    "text of more than one vector of thirty-two bytes"sv,
    "\r\n    "sv,
    "\xC3\xA4\xD0\xB6\xE2\x82\xAC\xE4\xB8\x80\xF0\x9F\x98\x80"sv,
    "&amp;&lt;&gt;&quot;&apos;"sv,
    "&#65;&#x1F600;"sv,
    "]] > ]]&gt;"sv,
    "<a/>"sv,
    "<a></a>"sv,
    "<a b='1' c=\"2 &amp; '3'\">x<b/></a >"sv,
    "<\xC3\xA4 \xE4\xB8\x80='\xE2\x82\xAC'/>"sv,
    "<!-- <a> & -->"sv,
    "<?p <a> & ?>"sv,
    "<![CDATA[<a> & ]] >]]>"sv,
};

/// A number below `limit`, which is not 0. The distributions of the standard library differ from one to another.
std::size_t Below(std::size_t limit, std::mt19937_64& random)
{
    return static_cast<std::size_t>(random() % limit);
}

struct Span {
    std::size_t begin;
    std::size_t length;
};

/// A mostly short part of a text, which may be empty.
Span SpanOf(const std::string& text, std::mt19937_64& random)
{
    const std::size_t begin = Below(text.size() + 1, random);
    const std::size_t longest = Below(4, random) == 0 ? 100 : 8;
    return {begin, std::min(Below(longest, random), text.size() - begin)};
}

/// The document without its document type; nothing when it has none.
std::optional<std::string> WithoutDoctype(const std::string& text)
{
    const std::size_t begin = text.find("<!DOCTYPE");
    if (begin == std::string::npos) {
        return std::nullopt;
    }
    const std::size_t subset = text.find_first_of("[>", begin);
    const std::size_t last = subset != std::string::npos && text[subset] == '[' ? text.rfind("]") : subset;
    const std::size_t end = last == std::string::npos ? last : text.find('>', last);
    return end == std::string::npos ? std::nullopt : std::optional(text.substr(0, begin) + text.substr(end + 1));
}

/// Puts a content after a tag, except the last one. A tag is known by its last characters alone, so a few documents
/// break.
void AddContent(std::string& text, std::mt19937_64& random)
{
    const std::size_t end = text.find('>', Below(text.size() + 1, random));
    const bool isTag = end != std::string::npos && end != 0 && text[end - 1] != '?' && text[end - 1] != '-';
    if (isTag && end != text.rfind('>')) {
        text.insert(end + 1, kContents[Below(std::size(kContents), random)]);
    }
}

}  // namespace

Mutations::Mutations(std::vector<std::string> seeds)
    : m_seeds(std::move(seeds)), m_builtIn(std::min(BuiltInSeeds().size(), m_seeds.size()))
{
}

std::string Mutations::Text(std::uint64_t number) const
{
    std::mt19937_64 random(number);
    // A quarter of the texts begin as built-in documents, which the scanner accepts: most files of a test suite are
    // meant to be refused, or have a DOCTYPE.
    const std::size_t range = Below(4, random) == 0 ? m_builtIn : m_seeds.size();
    std::string text = m_seeds[Below(range, random)];
    // Texts of all lengths, so that every place of a block is reached.
    if (Below(2, random) == 0) {
        text.append(Below(70, random), ' ');
    }
    // Half of the texts stay what they were: otherwise hardly one in eight would be accepted.
    const bool isGentle = Below(2, random) == 0;
    for (std::uint64_t left = Below(kMostMutations + 1, random); left > 0; --left) {
        isGentle ? AddContent(text, random) : Mutate(text, random);
    }
    return text;
}

void Mutations::Mutate(std::string& text, std::mt19937_64& random) const
{
    enum : std::uint8_t { Insert, Overwrite, Erase, Repeat, Splice, ChangeByte, Kinds };
    const Span span = SpanOf(text, random);
    const std::string_view piece = kPieces[Below(std::size(kPieces), random)];
    switch (Below(Kinds, random)) {
        case Insert:
            text.insert(span.begin, piece);
            break;
        case Overwrite:
            text.replace(span.begin, std::min(piece.size(), text.size() - span.begin), piece);
            break;
        case Erase:
            text.erase(span.begin, span.length);
            break;
        case Repeat:
            text.insert(span.begin, text.substr(span.begin, span.length));
            break;
        case Splice: {
            const std::string& other = m_seeds[Below(m_seeds.size(), random)];
            const Span taken = SpanOf(other, random);
            text.insert(span.begin, other, taken.begin, taken.length);
            break;
        }
        default:
            if (span.begin < text.size()) {
                text[span.begin] = static_cast<char>(random());
            }
    }
}

std::vector<std::string> BuiltInSeeds()
{
    std::string attributes = "<a";
    for (int i = 0; i < 20; ++i) {
        attributes.append(" b").append(std::to_string(i)).append("='").append(std::to_string(i)).append("'");
    }
    // More names than are compared with each other, out of order, in tags that begin alike.
    std::string many = "<r><b z=''";
    for (int i = 15; i > 0; --i) {
        many.append(" a").append(std::to_string(i)).append("=''");
    }
    many += "/><b z='1' c='2'/><b z='1' z='2'/></r>";
    std::string policy = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n<PolicyFile>\r\n";
    for (int i = 0; i < 6; ++i) {
        policy += "  <Product SoftwareID=\"P" + std::to_string(i) + "\">\r\n    <Section name=\"General\">\r\n";
        policy += "      <Setting name=\"Enabled\">1 &amp; 2</Setting>\r\n      <Setting name=\"Path\"/>\r\n";
        policy += "    </Section>\r\n  </Product>\r\n";
    }
    return {"<a/>",
            "<a b='1' c=\"2\">x<b>y</b>z<b/><b x='1'/><b x='2' y='3'></b></a>",
            "<?xml version='1.0' encoding='UTF-8' standalone='yes'?>\n<!-- c --><?p d?>\n<a>t</a>\n<!-- e --><?q?>\n",
            "<a><![CDATA[<x>&y;]] >]]>&lt;&#65;&#x1F600;]]&gt;<!-- <b> & --><?pi <c> ?></a>",
            "<\xC3\xA4\xE4\xB8\x80 \xC3\xB6\xCC\x81='\xE2\x82\xAC'>\xF0\x9F\x98\x80 text "
            "\xE2\x82\xAC</\xC3\xA4\xE4\xB8\x80>",
            "<a:b xmlns:a='u' a:c=''><a:d><e><f><g><h><i/></h></g></f></e></a:d></a:b>",
            attributes + "/>",
            many,
            policy + "</PolicyFile>\r\n"};
}

std::vector<std::string> SeedsBelow(const std::string& folder)
{
    std::vector<std::filesystem::path> paths;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
        if (entry.is_regular_file() && entry.file_size() <= kLongestSeed) {
            paths.push_back(entry.path());
        }
    }
    std::sort(paths.begin(), paths.end());  // folders are listed in any order
    std::vector<std::string> seeds;
    for (const std::filesystem::path& path : paths) {
        std::string bytes;
        const bool isRead = zupm::ReadWholeFile(path.u16string(), bytes) >= 0;
        std::optional<XmlText> text = Decode(bytes, DetectEncoding(bytes));
        if (!isRead || !text) {
            continue;
        }
        seeds.push_back(std::move(*text).TakeUtf8());
        if (std::optional<std::string> shorter = WithoutDoctype(seeds.back())) {
            seeds.push_back(std::move(*shorter));
        }
    }
    return seeds;
}

}  // namespace AdvXMLParser

#include "Layouts.h"

#include "tests/support/TextEdit.h"

namespace zupm::test {

namespace {

constexpr std::string_view kCanonicalStep = "  ";

/// One line with its indentation in steps of the layout.
std::string Indented(std::string_view line, std::string_view step)
{
    std::string result;
    while (line.starts_with(kCanonicalStep)) {
        line.remove_prefix(kCanonicalStep.size());
        result += step;
    }
    return result.append(line);
}

}  // namespace

void PrintTo(const Layout& layout, std::ostream* out)
{
    *out << layout.label;
}

const std::vector<Layout>& Layouts()
{
    static const std::vector<Layout> layouts{
        {"LfTwoBlanks", "\n", "  ", Form::Utf8, "UTF-8"},
        {"CrLfTwoBlanks", "\r\n", "  ", Form::Utf8, "UTF-8"},
        {"CrFourBlanks", "\r", "    ", Form::Utf8, "UTF-8"},
        {"LfTabs", "\n", "\t", Form::Utf8, "utf-8"},
        {"CrLfTabsSigned", "\r\n", "\t", Form::Utf8Signed, "UTF-8"},
        {"LfNoIndentation", "\n", "", Form::Utf8, "UTF-8"},
        {"NoLineBreaks", "", "", Form::Utf8, "UTF-8"},
        {"NoLineBreaksUtf16", "", "", Form::Utf16LeSigned, "UTF-16"},
        {"CrLfUtf16LittleEndian", "\r\n", "  ", Form::Utf16LeSigned, "UTF-16"},
        {"LfUtf16BigEndian", "\n", "\t", Form::Utf16BeSigned, "UTF-16"},
        {"CrLfUtf16WithoutSignature", "\r\n", "    ", Form::Utf16Le, "UTF-16"},
        {"CrLfLatin1", "\r\n", "  ", Form::Latin1, "ISO-8859-1"},
    };
    return layouts;
}

std::string LaidOut(std::string_view canonical, const Layout& layout)
{
    std::string text;
    while (!canonical.empty()) {
        const std::size_t end = canonical.find('\n');
        text += Indented(canonical.substr(0, end), layout.indent);
        text += end == std::string_view::npos ? std::string_view() : layout.lineEnd;
        canonical.remove_prefix(end == std::string_view::npos ? canonical.size() : end + 1);
    }
    return Encode(ReplaceOnce(text, "UTF-8", layout.encodingName), layout.form);
}

}  // namespace zupm::test

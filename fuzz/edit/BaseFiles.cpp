#include "fuzz/edit/BaseFiles.h"

#include <iterator>

#include "fuzz/support/SampleTexts.h"
#include "tests/support/TextEdit.h"
#include "xml/Encoding.h"

namespace zupm::fuzz {

namespace {

using AdvXMLParser::UTF_ENCODINGS;

constexpr std::size_t kLongestFile = 4096;

struct Form {
    std::string_view declared;
    UTF_ENCODINGS encoding;
};

constexpr Form kForms[] = {
    {"UTF-8", UTF_ENCODINGS::Utf8},
    {"UTF-8", UTF_ENCODINGS::Utf8Signed},
    {"UTF-16", UTF_ENCODINGS::Utf16LittleEndianSigned},
    {"UTF-16", UTF_ENCODINGS::Utf16BigEndianSigned},
    {"UTF-16", UTF_ENCODINGS::Utf16LittleEndian},
    {"ISO-8859-1", UTF_ENCODINGS::Iso8859_1},
};

}  // namespace

std::string MakeBaseFile(Input& input)
{
    if (input.Flag()) {
        return input.Bytes(kLongestFile);
    }
    const Form& form = kForms[input.UpTo(std::size(kForms) - 1)];
    constexpr std::string_view kLineEnds[] = {"\n", "\r\n", "\r", ""};
    const std::string text =
        test::ReplaceAll(std::string(kSampleFile), "\n", kLineEnds[input.UpTo(std::size(kLineEnds) - 1)]);
    const std::string declared =
        test::ReplaceOnce(text, "?>", " encoding='" + std::string(form.declared) + "'?><!-- \u00E9 -->");
    return AdvXMLParser::Encode(declared, form.encoding, true).value();
}

}  // namespace zupm::fuzz

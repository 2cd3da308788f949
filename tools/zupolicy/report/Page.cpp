#include "tools/zupolicy/report/Page.h"

#include <ostream>
#include <sstream>
#include <string>
#include <string_view>

#include "tools/zupolicy/report/PageParts.h"
#include "tools/zupolicy/report/Visible.h"

namespace zupm::tool {
namespace {

void WriteHtml(std::ostream& out, std::string_view text)
{
    for (const char c : text) {
        switch (c) {
            case '&':
                out << "&amp;";
                break;
            case '<':
                out << "&lt;";
                break;
            case '>':
                out << "&gt;";
                break;
            case '"':
                out << "&quot;";
                break;
            default:
                out << c;
        }
    }
}

void WriteTitle(std::ostream& out, std::string_view title)
{
    std::ostringstream visible;
    WriteVisible(visible, title, Backslash::Kept);
    WriteHtml(out, visible.str());
}

void WriteMark(std::ostream& out, std::string_view mark, const PageData& data, const PageHead& head)
{
    if (mark == "policy") {
        out << "default-src 'none'; script-src 'sha256-" << kPageScriptHash << "'; style-src 'sha256-" << kPageStyleHash
            << "'; base-uri 'none'; form-action 'none'";
    } else if (mark == "title") {
        WriteTitle(out, head.title);
    } else if (mark == "style") {
        out << kPageStyle;
    } else if (mark == "data") {
        data.Write(out, head);
    } else if (mark == "script") {
        out << kPageScript;
    }
}

}  // namespace

void WritePage(std::ostream& out, const PageData& data, const PageHead& head)
{
    std::string_view rest = kPageDocument;
    for (std::size_t begin = rest.find('@'); begin != std::string_view::npos; begin = rest.find('@')) {
        const std::size_t end = rest.find('@', begin + 1);
        out << rest.substr(0, begin);
        WriteMark(out, rest.substr(begin + 1, end - begin - 1), data, head);
        rest.remove_prefix(end + 1);
    }
    out << rest;
}

}  // namespace zupm::tool

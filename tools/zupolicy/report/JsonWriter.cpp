#include "tools/zupolicy/report/JsonWriter.h"

#include <algorithm>
#include <ostream>

#include "tools/zupolicy/client/Utf8.h"

namespace zupm::tool {
namespace {

void WriteEscaped(std::ostream& out, char c)
{
    constexpr std::string_view kDigits = "0123456789abcdef";
    constexpr std::string_view kShort = "\"\"\\\\\bb\ff\nn\rr\tt";
    for (std::size_t i = 0; i < kShort.size(); i += 2) {
        if (kShort[i] == c) {
            out << '\\' << kShort[i + 1];
            return;
        }
    }
    const auto number = static_cast<unsigned char>(c);
    out << "\\u00" << kDigits[number >> 4u] << kDigits[number & 0xFu];
}

}  // namespace

JsonWriter::~JsonWriter()
{
    if (!m_hasValues.empty()) {
        m_out << '\n';
    }
}

void JsonWriter::BeginDocument()
{
    BeginObject();
    Key("schema").Number(kSchema);
}

JsonWriter& JsonWriter::Key(std::string_view name)
{
    BeginValue();
    Quote(name);
    m_out << (m_form == Form::Embedded ? ":" : ": ");
    m_afterKey = true;
    return *this;
}

void JsonWriter::Text(std::string_view text)
{
    BeginValue();
    Quote(text);
    EndValue();
}

void JsonWriter::Number(std::uint64_t number)
{
    BeginValue();
    m_out << number;
    EndValue();
}

void JsonWriter::Boolean(bool value)
{
    BeginValue();
    m_out << (value ? "true" : "false");
    EndValue();
}

void JsonWriter::Null()
{
    BeginValue();
    m_out << "null";
    EndValue();
}

void JsonWriter::Place(std::uint64_t number)
{
    if (number == 0) {
        Null();
    } else {
        Number(number);
    }
}

void JsonWriter::TextOrNull(const std::optional<std::string>& text)
{
    if (text) {
        Text(*text);
    } else {
        Null();
    }
}

void JsonWriter::Begin(char bracket)
{
    BeginValue();
    m_out << bracket;
    m_hasValues.push_back(false);
}

void JsonWriter::End(char bracket)
{
    const bool hasValues = m_hasValues.back();
    m_hasValues.pop_back();
    if (hasValues) {
        BeginLine();
    }
    m_out << bracket;
    EndValue();
}

void JsonWriter::BeginValue()
{
    if (m_afterKey || m_hasValues.empty()) {
        m_afterKey = false;
        return;
    }
    if (m_hasValues.back()) {
        m_out << (m_form == Form::OneLine ? ", " : ",");
    }
    m_hasValues.back() = true;
    BeginLine();
}

void JsonWriter::BeginLine()
{
    if (m_form != Form::Indented) {
        return;
    }
    m_out << '\n';
    for (std::size_t level = 0; level < m_hasValues.size(); ++level) {
        m_out << "  ";
    }
}

void JsonWriter::EndValue()
{
    if (m_hasValues.empty()) {
        m_out << '\n';
    }
}

bool JsonWriter::IsPlain(char c) const
{
    constexpr std::string_view kMarkup = "<>&";
    return c >= 0x20 && c < 0x7F && c != '"' && c != '\\' &&
           (m_form != Form::Embedded || kMarkup.find(c) == std::string_view::npos);
}

void JsonWriter::WriteCharacter(char32_t character, std::string_view bytes)
{
    constexpr char32_t kLineSeparator = 0x2028;
    constexpr char32_t kParagraphSeparator = 0x2029;
    if (m_form == Form::Embedded && character == kLineSeparator) {
        m_out << "\\u2028";
    } else if (m_form == Form::Embedded && character == kParagraphSeparator) {
        m_out << "\\u2029";
    } else {
        m_out << bytes;
    }
}

void JsonWriter::Quote(std::string_view text)
{
    m_out << '"';
    while (!text.empty()) {
        const auto* const end = std::find_if_not(text.begin(), text.end(), [&](char c) { return IsPlain(c); });
        const std::string_view rest = text.substr(static_cast<std::size_t>(end - text.begin()));
        m_out << text.substr(0, text.size() - rest.size());
        text = rest;
        if (text.empty()) {
            break;
        }
        if (static_cast<unsigned char>(text.front()) < 0x7F) {
            WriteEscaped(m_out, text.front());
            text.remove_prefix(1);
        } else if (const std::optional<char32_t> character = TakeCharacter(text)) {
            WriteCharacter(*character, rest.substr(0, rest.size() - text.size()));
        } else {
            m_out << "\xEF\xBF\xBD";
            text.remove_prefix(1);
        }
    }
    m_out << '"';
}

}  // namespace zupm::tool

#include <fstream>
#include <stdexcept>
#include <string_view>

#include "tests/ini/IniCases.h"
#include "text/Utf.h"

namespace zupm::test {

namespace {

constexpr std::string_view kMissing = "(none)";
constexpr std::string_view kDigits = "0123456789ABCDEF";

std::string Escaped(std::string_view bytes)
{
    std::string text;
    for (const char byte : bytes) {
        const auto number = static_cast<unsigned char>(byte);
        if (byte == '\r') {
            text += "\\r";
        } else if (byte == '\n') {
            text += "\\n";
        } else if (number < ' ' || number > '~' || byte == '\\' || byte == '#') {
            text.append("\\x").append(1, kDigits[number >> 4U]).append(1, kDigits[number & 15U]);
        } else {
            text += byte;
        }
    }
    return text;
}

std::string Unescaped(std::string_view text)
{
    std::string bytes;
    while (!text.empty()) {
        std::size_t length = 1;
        if (text.front() != '\\') {
            bytes += text.front();
        } else if (text[1] != 'x') {
            bytes += text[1] == 'r' ? '\r' : '\n';
            length = 2;
        } else {
            bytes += static_cast<char>(kDigits.find(text.at(2)) << 4U | kDigits.find(text.at(3)));
            length = 4;
        }
        text.remove_prefix(length);
    }
    return bytes;
}

std::vector<std::string_view> Columns(std::string_view line)
{
    std::vector<std::string_view> columns;
    for (std::size_t tab = 0; tab != line.npos;) {
        tab = line.find('\t');
        columns.push_back(line.substr(0, tab));
        line.remove_prefix(tab == line.npos ? line.size() : tab + 1);
    }
    return columns;
}

std::u16string TextOf(std::string_view column)
{
    return ToUtf16(Unescaped(column)).value();
}

}  // namespace

std::vector<IniRecord> ReadRecording(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    std::vector<IniRecord> records;
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with('#')) {
            continue;
        }
        const std::vector<std::string_view> columns = Columns(line);
        if (columns.size() != 5) {
            throw std::runtime_error("a line of the recording does not have five columns: " + line);
        }
        const auto before = columns[0] == kMissing ? std::nullopt : std::optional(Unescaped(columns[0]));
        records.push_back(
            {{before, TextOf(columns[1]), TextOf(columns[2]), TextOf(columns[3])}, Unescaped(columns[4])});
    }
    return records;
}

void WriteRecording(const std::filesystem::path& path, const std::vector<IniRecord>& records)
{
    std::ofstream file(path, std::ios::binary);
    file << "# What WritePrivateProfileStringW of Wine 8.0 makes of INI files; written by ini_tests with\n"
            "# ZUPM_WRITE_INI_RECORDING=<this file>. Columns: file before, section, key, value, file after.\n";
    for (const IniRecord& record : records) {
        const IniCase& input = record.input;
        file << (input.before ? Escaped(*input.before) : kMissing) << '\t' << Escaped(ToUtf8(input.section).value())
             << '\t' << Escaped(ToUtf8(input.key).value()) << '\t' << Escaped(ToUtf8(input.value).value()) << '\t'
             << Escaped(record.after) << '\n';
    }
    if (!file.flush()) {
        throw std::runtime_error("the recording cannot be written");
    }
}

}  // namespace zupm::test

#include "tools/zupolicy/commands/help/Completion.h"

#include <charconv>
#include <exception>
#include <optional>

#include "tools/zupolicy/commands/help/BashLine.h"
#include "tools/zupolicy/commands/help/Complete.h"
#include "tools/zupolicy/report/Visible.h"

namespace zupm::tool {
namespace {

constexpr std::string_view kFilesLine = "\tfiles\n";

std::string LineFor(const std::string& text, const std::string& description)
{
    return text + '\t' + Visible(Shortened(description)) + '\n';
}

std::string AnswerWords(const std::vector<std::string>& arguments)
{
    std::size_t count = 0;
    const std::string& number = arguments.at(1);
    const auto read = std::from_chars(number.data(), number.data() + number.size(), count);
    const std::size_t given = arguments.size() - 2;
    if (read.ec != std::errc() || given < count) {
        return {};
    }
    const auto first = arguments.begin() + 2;
    const auto cursor = first + static_cast<std::ptrdiff_t>(count);
    const Completion completion = Complete({first, cursor}, cursor == arguments.end() ? "" : *cursor);
    std::string lines(completion.files ? kFilesLine : "");
    for (const Candidate& candidate : completion.candidates) {
        lines += LineFor(candidate.text, candidate.description);
    }
    return lines;
}

std::string AnswerLine(const std::string& text, const std::string& breaks)
{
    const BashLine line(text, breaks);
    const Completion completion = Complete(line.Words(), line.Current());
    std::string lines(completion.files ? kFilesLine : "");
    for (const Candidate& candidate : completion.candidates) {
        if (const std::optional<std::string> replacement = line.ReplacementBy(candidate.text)) {
            lines += LineFor(*replacement, candidate.description);
        }
    }
    return lines;
}

}  // namespace

std::string CompletionFor(const std::vector<std::string>& arguments) noexcept
{
    try {
        if (arguments.size() >= 2 && arguments[0] == "words") {
            return AnswerWords(arguments);
        }
        if (arguments.size() == 3 && arguments[0] == "line") {
            return AnswerLine(arguments[1], arguments[2]);
        }
    } catch (const std::exception&) {  // NOLINT(bugprone-empty-catch): there is nobody to report it to
    }
    return {};
}

}  // namespace zupm::tool

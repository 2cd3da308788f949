#include "tools/zupolicy/report/Problem.h"

#include <filesystem>
#include <new>
#include <ostream>
#include <string_view>

#include "tools/zupolicy/client/Utf8.h"

namespace zupm::tool {
namespace {

ExitCode ExitCodeOf(const Error& error)
{
    if (dynamic_cast<const NotFound*>(&error) != nullptr) {
        return ExitCode::NotFound;
    }
    if (dynamic_cast<const Changed*>(&error) != nullptr) {
        return ExitCode::Changed;
    }
    if (dynamic_cast<const Locked*>(&error) != nullptr) {
        return ExitCode::Locked;
    }
    if (dynamic_cast<const NotFlushed*>(&error) != nullptr) {
        return ExitCode::Written;
    }
    const bool isAboutFile =
        dynamic_cast<const FileError*>(&error) != nullptr || dynamic_cast<const SyntaxError*>(&error) != nullptr ||
        dynamic_cast<const InvalidText*>(&error) != nullptr || error.Code() == result::OwnerNotKept;
    return isAboutFile ? ExitCode::FileError : ExitCode::Other;
}

bool IsFolder(const std::string& path)
{
    std::error_code ignored;
    return IsUtf8(path) && std::filesystem::is_directory(std::filesystem::path(FromUtf8(path)), ignored);
}

/// A text without "file: " in front: a problem names its file itself.
std::string WithoutFile(std::string_view text, std::string_view file)
{
    if (!file.empty() && text.starts_with(file)) {
        const std::string_view rest = text.substr(file.size());
        if (rest.empty()) {
            return {};
        }
        if (rest.starts_with(": ")) {
            return std::string(rest.substr(2));
        }
    }
    return std::string(text);
}

std::string HintFor(const Error& error)
{
    switch (error.Code()) {
        case result::ElementMissing:
            return "a policy goes into PolicyRoot/PolicyGroup/Policy, a task into TaskRoot";
        case result::FileChanged:
            return "--force overwrites it";
        case result::FileLocked:
            return "--lock-timeout sets how long to wait";
        default:
            return {};
    }
}

std::string CodeOf(result::Code code)
{
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    std::string text;
    for (unsigned int shift = 32; shift > 0; shift -= 4) {
        text += kDigits[(static_cast<std::uint32_t>(code) >> (shift - 4)) & 0xFu];
    }
    return text;
}

/// The name and the number of a code: "[PolicyNotFound, 0xFFFFFB49]".
std::string InBrackets(result::Code code)
{
    const std::string_view name = result::NameFor(code);
    return "[" + std::string(name.empty() ? "unknown code" : name) + ", 0x" + CodeOf(code) + "]";
}

void TextOrNull(JsonWriter& json, std::string_view text)
{
    if (text.empty()) {
        json.Null();
    } else {
        json.Text(text);
    }
}

}  // namespace

ProblemFailure::ProblemFailure(Problem problem) : Failure(problem.exit, LineOf(problem)), m_problem(std::move(problem))
{
}

ProblemFailure ShortFailure(Problem problem)
{
    const std::string hint = problem.hint.empty() ? "" : " (" + problem.hint + ")";
    const std::string line = problem.file + ": " + problem.message + hint;
    return {std::move(problem), line};
}

Problem CurrentProblem(const std::string& file)
{
    try {
        throw;
    } catch (const ProblemFailure& failure) {
        return failure.What();
    } catch (const Failure& failure) {
        const std::string& about = failure.File().empty() ? file : failure.File();
        return {{}, failure.Code(), about, 0, 0, WithoutFile(failure.what(), about), {}};
    } catch (const Error& error) {
        return ProblemOf(error, {file, WithoutFile(error.Subject(), error.File().empty() ? file : error.File())});
    } catch (const std::bad_alloc&) {
        return {result::OutOfMemory, ExitCode::Other, file, 0, 0, "out of memory", {}};
    } catch (const std::exception& error) {
        return {{}, ExitCode::Other, file, 0, 0, error.what(), {}};
    }
}

Problem ProblemOf(const Error& error, const Subject& subject)
{
    const std::string& file = error.File().empty() ? subject.file : error.File();
    // The system reports a denied access, or a name that is not valid.
    if (dynamic_cast<const FileError*>(&error) != nullptr && IsFolder(file)) {
        return {error.Code(), ExitCode::FileError, file, 0, 0, "is a folder", {}};
    }
    const bool hasAbout = error.Line() == 0 && !subject.about.empty();
    return {error.Code(),  ExitCodeOf(error), file,
            error.Line(),  error.Column(),    (hasAbout ? subject.about + ": " : std::string()) + error.Sentence(),
            HintFor(error)};
}

void Check(HRESULT result, const Subject& subject)
{
    if (result < 0) {
        Calling(subject, [&] {
            client::ThrowFailed(static_cast<result::Code>(result), client::TakeDescription(), {}, subject.file);
        });
    }
}

std::string LineOf(const Problem& problem)
{
    std::string line = problem.file;
    if (problem.line != 0) {
        line += ":" + std::to_string(problem.line) + ":" + std::to_string(problem.column);
    }
    line += (line.empty() ? "" : ": ") + problem.message;
    if (problem.code) {
        line += " " + InBrackets(*problem.code);
    }
    return problem.hint.empty() ? line : line + "; " + problem.hint;
}

void WriteProblem(JsonWriter& json, const Problem& problem)
{
    json.Key("error").BeginObject();
    json.Key("code");
    TextOrNull(json, problem.code ? CodeOf(*problem.code) : std::string());
    json.Key("name");
    TextOrNull(json, problem.code ? result::NameFor(*problem.code) : std::string_view());
    json.Key("exit").Number(static_cast<std::uint64_t>(problem.exit));
    json.Key("file");
    TextOrNull(json, problem.file);
    json.Key("line").Place(problem.line);
    json.Key("column").Place(problem.column);
    json.Member("message", problem.message);
    json.Key("hint");
    TextOrNull(json, problem.hint);
    json.EndObject();
}

void WriteFailure(std::ostream& out, const Problem& problem)
{
    JsonWriter json(out, JsonWriter::Form::OneLine);
    json.BeginDocument();
    WriteProblem(json, problem);
    json.EndObject();
}

}  // namespace zupm::tool

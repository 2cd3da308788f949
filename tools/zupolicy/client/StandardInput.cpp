#include "tools/zupolicy/client/StandardInput.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdio>
#include <fstream>
#include <iostream>
#include <system_error>
#include <utility>

#include "tools/zupolicy/client/Utf8.h"

namespace zupm::tool {
namespace {

Failure NoInput(const std::string& reason)
{
    return Failure(ExitCode::FileError, std::string(kStandardInput), reason);
}

void RequireFirstTime()
{
    static std::atomic<bool> wasRead = false;
    if (wasRead.exchange(true)) {
        throw Failure(ExitCode::Usage, std::string(kStandardInput), "standard input can be read only once");
    }
}

void CopyTo(const std::filesystem::path& path)
{
    std::array<char, std::size_t{64} << 10U> piece{};
    std::ofstream file(path, std::ios::binary);
    while (file && std::cin) {
        std::cin.read(piece.data(), static_cast<std::streamsize>(piece.size()));
        file.write(piece.data(), std::cin.gcount());
    }
    file.close();
    if (!file) {
        throw NoInput("the temporary copy of standard input cannot be written");
    }
    // The stream takes an error for the end, and a half must not pass for the whole.
    if (std::ferror(stdin) != 0) {
        throw NoInput("standard input cannot be read");
    }
}

ScratchFile MakeFile()
{
    RequireFirstTime();
    try {
        return {};
    } catch (const std::system_error& error) {
        throw NoInput(std::string("a temporary file cannot be used: ") + error.what());
    }
}

}  // namespace

StandardInput::StandardInput() : m_file(MakeFile()), m_path(ToUtf8(m_file.Path().u16string()))
{
    CopyTo(m_file.Path());
}

ProblemFailure StandardInput::Named(Problem problem) const
{
    if (problem.file == m_path) {
        problem.file = kStandardInput;
    }
    return ProblemFailure(std::move(problem));
}

void RequireReplaceable(const std::string& path)
{
    if (path == kStandardInput) {
        throw ProblemFailure({{},
                              ExitCode::Usage,
                              path,
                              0,
                              0,
                              "standard input cannot be replaced",
                              "set and remove read it with --output; a file of that name is ./-"});
    }
}

}  // namespace zupm::tool

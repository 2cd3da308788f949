#include <CLI/CLI.hpp>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "tools/zupolicy/client/FolderWatch.h"
#include "tools/zupolicy/client/Interrupt.h"
#include "tools/zupolicy/client/PolicyFile.h"
#include "tools/zupolicy/client/StandardInput.h"
#include "tools/zupolicy/commands/Commands.h"
#include "tools/zupolicy/commands/Options.h"
#include "tools/zupolicy/commands/RedactOption.h"
#include "tools/zupolicy/report/WatchReport.h"

namespace zupm::tool {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

/// How often the files are looked at when the system reports nothing.
constexpr milliseconds kPeriod{2000};
/// A program that does not replace the file in one step has this time to write all of it.
constexpr milliseconds kGrace{300};

struct WatchOptions {
    std::vector<std::string> files;
    Redaction hidden;
    std::optional<std::uint64_t> exitAfter;
    std::optional<unsigned> timeoutSeconds;
    bool json = false;
};

/// One file and what is known of it.
class Watched {
public:
    explicit Watched(std::string path) : m_path(std::move(path)) {}

    [[nodiscard]] const std::string& Path() const noexcept { return m_path; }

    /// Reads the file when it may have changed, and reports what is new.
    ///
    /// A file that has a new stamp is read again after a while: it may have been written a second time in the same
    /// moment, and a stamp does not show that. Only then does a file that cannot be read count as broken.
    void Look(WatchReport& report)
    {
        const FileStamp stamp = StampOfFile(m_path);
        const bool isNew = !m_isRead || stamp != m_stamp;
        if (!isNew && (!m_readAgain || Clock::now() < *m_readAgain)) {
            return;
        }
        const bool isFirst = !m_isRead;
        m_isRead = true;
        m_stamp = stamp;
        m_readAgain.reset();
        Read(report, isNew, isFirst);
    }

    /// How long it may take until the next look.
    [[nodiscard]] milliseconds Patience() const
    {
        if (!m_readAgain) {
            return kPeriod;
        }
        const auto rest = std::chrono::ceil<milliseconds>(*m_readAgain - Clock::now());
        return std::clamp(rest, milliseconds(0), kPeriod);
    }

private:
    void Read(WatchReport& report, bool isNew, bool isFirst)
    {
        try {
            model::FileState state = model::ReadState(m_path);
            if (!std::exchange(m_problem, {}).empty()) {
                report.Sound(m_path);
            }
            if (m_state) {
                report.Changed(m_path, *m_state, state);
            }
            m_state = std::move(state);
            if (isNew) {
                m_readAgain = Clock::now() + kPeriod;
            }
        } catch (const std::exception&) {
            const Problem problem = CurrentProblem(m_path);
            if (isNew && !isFirst) {
                m_readAgain = Clock::now() + kGrace;
            } else if (std::string line = LineOf(problem); line != m_problem) {
                report.Broken(m_path, problem);
                m_problem = std::move(line);
            }
        }
    }

    std::string m_path;
    bool m_isRead = false;
    FileStamp m_stamp;
    std::optional<Clock::time_point> m_readAgain;
    std::optional<model::FileState> m_state;  ///< the last one that could be read
    std::string m_problem;                    ///< what was reported last; empty for a sound file
};

std::vector<std::filesystem::path> FoldersOf(const std::vector<std::string>& files)
{
    std::vector<std::filesystem::path> folders;
    for (const std::string& file : files) {
        const std::filesystem::path path(std::u8string(file.begin(), file.end()));
        folders.push_back(path.has_parent_path() ? path.parent_path() : std::filesystem::path("."));
        // What a link leads to lies in another folder, at least at the moment.
        std::error_code ignored;
        if (const std::filesystem::path real = std::filesystem::weakly_canonical(path, ignored);
            std::filesystem::is_symlink(path, ignored) && real.has_parent_path()) {
            folders.push_back(real.parent_path());
        }
    }
    return folders;
}

/// Until when to wait, and what the run has come to.
class WatchRun {
public:
    WatchRun(const WatchOptions& options, Streams streams)
        : m_options(options),
          m_report(streams, options.json, options.hidden, options.exitAfter),
          m_files(options.files.begin(), options.files.end()),
          m_folders(FoldersOf(options.files))
    {
        if (options.timeoutSeconds) {
            m_end = Clock::now() + std::chrono::seconds(*options.timeoutSeconds);
        }
    }

    ExitCode Run(Streams streams)
    {
        LookAtAll();
        streams.messages.Line("zupolicy: watching " + std::to_string(m_files.size()) +
                              (m_files.size() == 1 ? " file" : " files"));
        while (!m_report.IsOver() && !Interrupt::IsAsked()) {
            if (m_end && Clock::now() >= *m_end) {
                const bool isEnough = !m_options.exitAfter && m_report.Changes() != 0;
                return isEnough ? ExitCode::Ok : ExitCode::NotFound;
            }
            static_cast<void>(m_folders.Wait(Patience()));
            LookAtAll();
        }
        return ExitCode::Ok;
    }

private:
    void LookAtAll()
    {
        for (Watched& file : m_files) {
            if (!m_report.IsOver()) {
                file.Look(m_report);
            }
        }
    }

    [[nodiscard]] milliseconds Patience() const
    {
        milliseconds patience = kPeriod;
        for (const Watched& file : m_files) {
            patience = std::min(patience, file.Patience());
        }
        if (m_end) {
            patience = std::min(patience, std::chrono::ceil<milliseconds>(*m_end - Clock::now()));
        }
        return std::max(patience, milliseconds(1));
    }

    const WatchOptions& m_options;
    WatchReport m_report;
    std::vector<Watched> m_files;
    FolderWatch m_folders;
    std::optional<Clock::time_point> m_end;
};

ExitCode RunWatch(const WatchOptions& options, Streams streams)
{
    for (const std::string& file : options.files) {
        RequireName(file);
        if (file == kStandardInput) {
            throw ProblemFailure({{},
                                  ExitCode::Usage,
                                  file,
                                  0,
                                  0,
                                  "standard input cannot be watched: it is read once and has no later state",
                                  "a file of that name is ./-"});
        }
    }
    const Interrupt interrupt;
    return WatchRun(options, streams).Run(streams);
}

Action DeclareWatch(CLI::App& line)
{
    const auto options = std::make_shared<WatchOptions>();
    line.add_option("FILE", options->files, "The policy files")->required();
    line.add_option("--exit-after", options->exitAfter, "End after this number of changes")
        ->type_name("COUNT")
        ->check(CLI::Range(std::uint64_t{1}, std::uint64_t{1} << 62U));
    line.add_option("--timeout", options->timeoutSeconds, "End after this time")
        ->type_name("SECONDS")
        ->check(CLI::Range(1U, 100'000'000U));
    AddRedact(line, options->hidden);
    line.add_flag("--json", options->json, "Print JSON, one object a line");
    return [options](Streams streams) {
        return Hiding(options->hidden, streams, [&] { return RunWatch(*options, streams); });
    };
}

}  // namespace

constinit const Command kWatch{
    .name = "watch",
    .description =
        "Wait for changes of policy files, and print what each one changes in meaning. Ctrl-C ends it with exit code "
        "0. Exit code 1: --timeout passed before a change",
    .examples =
        "  zupolicy watch policy.xml\n"
        "  zupolicy watch /etc/policies/*.xml --json\n"
        "  zupolicy watch policy.xml --exit-after 1 --timeout 60",
    .declare = DeclareWatch,
};

}  // namespace zupm::tool

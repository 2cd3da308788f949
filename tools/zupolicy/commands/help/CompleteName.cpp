#include "tools/zupolicy/commands/help/CompleteName.h"

#include <cstdlib>
#include <filesystem>
#include <optional>
#include <sstream>
#include <unordered_map>

#include "tools/zupolicy/client/Failure.h"
#include "tools/zupolicy/client/StandardInput.h"
#include "tools/zupolicy/client/Utf8.h"
#include "tools/zupolicy/client/contents/DocumentReader.h"
#include "tools/zupolicy/client/contents/SourceBytes.h"
#include "tools/zupolicy/client/contents/SourceText.h"
#include "tools/zupolicy/report/Visible.h"

namespace zupm::tool {
namespace {

namespace fs = std::filesystem;

/// A person waits for the answer.
constexpr std::uintmax_t kLargestNamedFile = std::uintmax_t{16} << 20U;
constexpr std::size_t kMostNames = 5000;

/// The path with the home folder in place of a leading "~", which the shells leave to programs here.
std::string Expanded(const std::string& path)
{
    // NOLINTNEXTLINE(concurrency-mt-unsafe): no thread exists yet
    const char* const home = path.starts_with("~/") ? std::getenv("HOME") : nullptr;
    return home == nullptr ? path : home + path.substr(1);
}

std::optional<FileContents> ContentsOf(const std::string& name)
{
    if (name.empty() || name == kStandardInput) {
        return std::nullopt;
    }
    const std::string path = Expanded(name);
    std::error_code error;
    const std::uintmax_t size = fs::file_size(ForOpening(fs::path(FromUtf8(path))), error);
    if (error || size > kLargestNamedFile) {
        return std::nullopt;
    }
    const std::optional<std::string> text = DecodeSource(ReadBytes(path));
    return text ? ReadDocument(*text) : std::nullopt;
}

/// Whether the name is one that `wanted` stands for: a pattern may be any.
bool Fits(std::string_view name, const std::string& wanted)
{
    return wanted.empty() || wanted.find_first_of("*?") != std::string::npos || name == wanted;
}

/// Whether a terminal shows the name as it is.
bool IsPrintable(std::string_view name)
{
    std::ostringstream visible;
    WriteVisible(visible, name, Backslash::Kept);
    return visible.view() == name;
}

std::string Counted(std::size_t count, const std::string& what)
{
    return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

/// The names that were found, each once, with a description that grows.
class NameList {
public:
    explicit NameList(std::string_view start) : m_start(start) {}

    void Add(std::string_view name, const std::string& description)
    {
        if (name.empty() || !name.starts_with(m_start) || !IsPrintable(name)) {
            return;
        }
        const auto [known, isNew] = m_numbers.emplace(name, m_candidates.size());
        if (isNew) {
            m_candidates.push_back({std::string(name), description});
        } else if (!description.empty() && m_candidates[known->second].description.empty()) {
            m_candidates[known->second].description = description;
        }
    }

    [[nodiscard]] std::vector<Candidate> Take()
    {
        return m_candidates.size() > kMostNames ? std::vector<Candidate>{} : std::move(m_candidates);
    }

private:
    std::string_view m_start;
    std::vector<Candidate> m_candidates;
    std::unordered_map<std::string_view, std::size_t> m_numbers;  ///< the names are those of the contents
};

/// Looks through the contents of a file.
class NameSearch {
public:
    NameSearch(const FileContents& contents, const NamePlace& place, NameKind kind, NameList& names)
        : m_contents(contents), m_place(place), m_kind(kind), m_names(names)
    {
    }

    void Run()
    {
        if (m_kind == NameKind::SoftwareId) {
            AddSoftwareIds();
            return;
        }
        if (m_place.hasPolicies && m_kind != NameKind::TaskId) {
            for (const Policy& policy : m_contents.policies) {
                LookInto(policy);
            }
        }
        if (m_place.hasTasks) {
            for (const Task& task : m_contents.tasks) {
                LookInto(task);
            }
        }
    }

private:
    void AddSoftwareIds()
    {
        std::unordered_map<std::string_view, std::size_t> tasks;
        for (const Task& task : m_contents.tasks) {
            ++tasks[m_contents.Text(task.softwareId)];
        }
        for (const Policy& policy : m_contents.policies) {
            const std::string_view id = m_contents.Text(policy.softwareId);
            const auto found = tasks.find(id);
            m_names.Add(id, found == tasks.end() ? "policy" : "policy, " + Counted(found->second, "task"));
        }
        for (const Task& task : m_contents.tasks) {
            const std::string_view id = m_contents.Text(task.softwareId);
            m_names.Add(id, Counted(tasks[id], "task"));
        }
    }

    template <class Entry>
    void LookInto(const Entry& entry)
    {
        if (!Fits(m_contents.Text(entry.softwareId), m_place.softwareId)) {
            return;
        }
        if constexpr (requires { entry.taskId; }) {
            const std::string_view id = m_contents.Text(entry.taskId);
            if (m_kind == NameKind::TaskId) {
                m_names.Add(id, std::string(m_contents.Text(entry.displayName)));
                return;
            }
            if (!Fits(id, m_place.taskId)) {
                return;
            }
        }
        for (std::uint32_t number = entry.firstSection; number < entry.endSection; ++number) {
            LookInto(m_contents.sections[number]);
        }
    }

    void LookInto(const Section& section)
    {
        const std::string_view name = m_contents.Text(section.name);
        if (m_kind == NameKind::Section) {
            std::size_t count = 0;
            ForEachSetting(section, [&](const Setting& /*setting*/) { ++count; });
            m_names.Add(name, Counted(count, "setting"));
        } else if (Fits(name, m_place.section)) {
            // Their values are not shown: a person who looks for a name may have company.
            ForEachSetting(section, [&](const Setting& setting) { m_names.Add(m_contents.Text(setting.name), {}); });
        }
    }

    template <class Call>
    void ForEachSetting(const Section& section, const Call& call) const
    {
        for (std::uint32_t number = section.firstSetting; number != kNone; number = m_contents.settings[number].next) {
            call(m_contents.settings[number]);
        }
    }

    const FileContents& m_contents;
    const NamePlace& m_place;
    NameKind m_kind;
    NameList& m_names;
};

}  // namespace

std::vector<Candidate> NamesIn(const NamePlace& place, NameKind kind, std::string_view start)
{
    const std::optional<FileContents> contents = ContentsOf(place.file);
    if (!contents) {
        return {};
    }
    NameList names(start);
    NameSearch(*contents, place, kind, names).Run();
    return names.Take();
}

}  // namespace zupm::tool

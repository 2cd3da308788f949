#include "tools/zupolicy/commands/PageFiles.h"

#include <ostream>
#include <sstream>
#include <utility>

#include "tools/zupolicy/client/Files.h"
#include "tools/zupolicy/client/LockedFile.h"
#include "tools/zupolicy/client/StandardInput.h"
#include "tools/zupolicy/client/contents/Contents.h"
#include "tools/zupolicy/model/MakeObjects.h"
#include "tools/zupolicy/model/ReadFile.h"
#include "tools/zupolicy/report/Page.h"
#include "tools/zupolicy/report/RuleReport.h"
#include "tools/zupolicy/rules/Check.h"

namespace zupm::tool {
namespace {

/// A hostile file may have a million.
constexpr std::size_t kMostProblems = 1000;

void AddEntry(PageFile& page, model::Entry entry, std::string version)
{
    DropRepeated(entry);
    page.entries.push_back({std::move(entry), std::move(version)});
}

/// The rules see the records of the file, for which it is read once more.
void AddViolations(PageFile& page, const std::string& path, const rules::RuleSet& rules, const Redaction& redaction)
{
    const PlacedContents placed = ReadPlaced(path, [](PolicyFile&) {});
    for (const RuleProblem& problem :
         Placed(rules::CheckRules(rules, rules::DocumentOf(placed.contents), redaction), placed.text)) {
        if (page.problems.size() == kMostProblems) {
            ++page.moreProblems;
            continue;
        }
        page.problems.push_back({problem.IsError() ? PageProblem::Severity::Error : PageProblem::Severity::Warning,
                                 problem.line, problem.column,
                                 problem.violation.path + ": " + problem.violation.message});
    }
}

void AddNotices(PageFile& page, const zupm::PolicyFile& file)
{
    const zupm::Notices notices = file.Notices();
    std::size_t seen = 0;
    for (const zupm::Notice& notice : notices) {
        if (page.problems.size() == kMostProblems) {
            page.moreProblems += notices.Count() - seen;
            break;
        }
        ++seen;
        page.problems.push_back({PageProblem::Severity::Warning, static_cast<std::uint64_t>(notice.line),
                                 static_cast<std::uint64_t>(notice.column), notice.text});
    }
}

}  // namespace

PageFile ReadForPage(const std::string& name, const zupm::PolicyFile& file)
{
    PageFile page{name, file.PolicyVersion(), file.TaskVersion(), file.AssignmentList(), {}, {}, 0, {}};
    for (const zupm::Policy& policy : file.Policies()) {
        AddEntry(page, model::Read(policy), policy.TakenVersion());
    }
    for (const zupm::Task& task : file.Tasks()) {
        AddEntry(page, model::Read(task), task.TakenVersion());
    }
    AddNotices(page, file);
    return page;
}

PageFile ReadForPage(const std::string& path, const rules::RuleSet* rules, const Redaction& redaction)
{
    try {
        return Reading(path, [&](const std::string& source) {
            const zupm::PolicyFile file = model::MakeFile(path);
            model::Load(file, source, true);
            PageFile page = ReadForPage(path, file);
            if (rules != nullptr) {
                AddViolations(page, source, *rules, redaction);
            }
            return page;
        });
    } catch (const std::exception&) {
        return {path, {}, {}, {}, {}, {}, 0, CurrentProblem(path)};
    }
}

void RequireOtherFile(const std::string& output, const std::vector<std::string>& files)
{
    for (const std::string& file : files) {
        if (output != "-" && file != "-" && AreSameFile(output, file)) {
            throw Failure(ExitCode::Usage, output, "is one of the files that are read");
        }
    }
}

void WritePageTo(const std::string& output, const PageData& data, const PageHead& head, std::ostream& standardOutput)
{
    if (output == "-") {
        WritePage(standardOutput, data, head);
        return;
    }
    RequireName(output);
    std::ostringstream page;
    WritePage(page, data, head);
    WriteWhole(output, page.view());
}

}  // namespace zupm::tool

#include "tools/zupolicy/commands/PageFiles.h"

#include <ostream>
#include <sstream>
#include <utility>

#include "tools/zupolicy/client/Files.h"
#include "tools/zupolicy/client/LockedFile.h"
#include "tools/zupolicy/model/ReadFile.h"
#include "tools/zupolicy/report/Page.h"

namespace zupm::tool {
namespace {

/// A hostile file may have a million.
constexpr std::size_t kMostProblems = 1000;

void AddEntry(PageFile& page, model::Entry entry, std::string version)
{
    DropRepeated(entry);
    page.entries.push_back({std::move(entry), std::move(version)});
}

void AddProblems(PageFile& page, const zupm::PolicyFile& file)
{
    const zupm::Notices notices = file.Notices();
    for (const zupm::Notice& notice : notices) {
        if (page.problems.size() == kMostProblems) {
            page.moreProblems = notices.Count() - kMostProblems;
            break;
        }
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
    AddProblems(page, file);
    return page;
}

PageFile ReadForPage(const std::string& path)
{
    try {
        return ReadForPage(path, model::OpenToRead(path));
    } catch (const std::exception&) {
        return {path, {}, {}, {}, {}, {}, 0, CurrentProblem(path)};
    }
}

void RequireOtherFile(const std::string& output, const std::vector<std::string>& files)
{
    for (const std::string& file : files) {
        if (output != "-" && file != "-" && AreSameFile(output, file)) {
            throw Failure(ExitCode::Usage, output, "is one of the files that the page is about");
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

/// Pieces of tests/data/agent.xml before and after edits.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "EditCases.h"

namespace zupm::test {

/// The stamp of the tests' clock, and the stamp in the file.
inline const std::string kNewStamp = "20260102030405";
inline const std::string kOldStamp = "20250101000000";

inline std::string Setting(const std::string& name, const std::string& raw)
{
    return "<Setting name=\"" + name + "\">" + raw + "</Setting>";
}

/// A whole line, indented by that number of steps.
inline std::string Line(std::size_t steps, const std::string& text)
{
    return std::string(2 * steps, ' ') + text + "\n";
}

/// A section of a policy with one setting.
inline std::string Section(const std::string& name, const std::string& setting)
{
    return Line(5, "<Section name=\"" + name + "\">") + Line(6, setting) + Line(5, "</Section>");
}

inline const std::string kScannerMode =
    Line(6, Setting("Mode", "full")) + Line(5, "</Section>") + Line(4, "</Product>");
inline const std::string kScannerBegin = Line(4, "<Product SoftwareID=\"Scanner\">") +
                                         Line(5, "<Section name=\"General\">") + Line(6, Setting("Enabled", "1"));
inline const std::string kScanner = kScannerBegin + kScannerMode;
inline const std::string kQuickScanner =
    kScannerBegin + Line(6, Setting("Mode", "quick")) + Line(5, "</Section>") + Line(4, "</Product>");

inline const std::string kLastGeneral = Line(6, Setting("Note", "<![CDATA[a < b]]>"));
inline const std::string kProxy = Section("Proxy", Setting("Server", "gr\u00F6\u00DFe.example"));
inline const std::string kUpdaterEnd = kProxy + Line(4, "</Product>");
inline const std::string kUpdater =
    Line(4, "<Product SoftwareID=\"Updater\">") + Line(5, "<Section name=\"General\">") + Line(6, "<!-- in hours -->") +
    Line(6, Setting("Interval", "12")) + kLastGeneral + Line(5, "</Section>") + kUpdaterEnd;

inline const std::string kPath1 = Line(5, Setting("Path1", "/"));
inline const std::string kPaths = Line(4, "<Section name=\"Paths\">") + kPath1 + Line(4, "</Section>");

/// What identifies a task.
struct Identity {
    std::string taskId, name, type, softwareId, creatorId, platforms, priority;
};

/// The sections that every write gives a task.
inline std::string IdentitySections(const Identity& task)
{
    return Line(4, "<Section name=\"Task\">") + Line(5, Setting("TaskID", task.taskId)) +
           Line(5, Setting("TaskName", task.name)) + Line(5, Setting("TaskType", task.type)) +
           Line(5, Setting("Platforms", task.platforms)) + Line(5, Setting("TaskPriority", task.priority)) +
           Line(4, "</Section>") + Line(4, "<Section name=\"General\">") + Line(5, Setting("TaskType", task.type)) +
           Line(5, Setting("wTaskType", task.type)) + Line(4, "</Section>");
}

inline std::string TaskGroup(const Identity& task, const std::string& stamp, const std::string& sections)
{
    return Line(2, "<TaskGroup Path=\"0_4\" TaskID=\"" + task.taskId + "\" DisplayName=\"" + task.name +
                       "\" TaskType=\"" + task.type + "\" SoftwareID=\"" + task.softwareId + "\" CreatorID=\"" +
                       task.creatorId + "\" Platforms=\"" + task.platforms + "\" TaskPriority=\"" + task.priority +
                       "\" TaskVersion=\"" + stamp + "\">") +
           Line(3, "<Task TaskVersion=\"" + stamp + "\" PathID=\"0_4\">") + sections + Line(3, "</Task>") +
           Line(2, "</TaskGroup>");
}

inline const Identity kDailyTask{"Daily", "Daily scan", "Scan", "Scanner", "Admin", "x64", "3"};
inline const Identity kWeeklyTask{"Weekly", "Weekly update", "Update", "Updater", "Admin", "x64", "1"};
inline const Identity kNewTask{"Once", "invalid", "invalid", "Agent", "invalid", "invalid", "0"};

inline const std::string kDaily =
    TaskGroup(kDailyTask, kOldStamp, IdentitySections(kDailyTask) + Line(4, "<!-- where to look -->") + kPaths);
inline const std::string kWeekly = TaskGroup(kWeeklyTask, kOldStamp, IdentitySections(kWeeklyTask));
/// A task that had the section "Paths" before it was added.
inline const std::string kOnce = TaskGroup(kNewTask, kNewStamp, kPaths + IdentitySections(kNewTask));

/// The changes, and the stamps that adding a policy makes.
inline std::vector<Change> Stamped(std::vector<Change> changes)
{
    for (const std::string begin : {"<PolicyRoot version=\"", " PolicyVersion=\""}) {
        changes.push_back({begin + kOldStamp, begin + kNewStamp});
    }
    return changes;
}

/// The changes, and the stamp that adding a task gives the file.
inline std::vector<Change> StampedTasks(std::vector<Change> changes)
{
    const std::string begin = "<TaskRoot version=\"";
    changes.push_back({begin + kOldStamp, begin + kNewStamp});
    return changes;
}

/// The changes, and the stamps that adding the task "Daily" makes.
inline std::vector<Change> StampedDaily(std::vector<Change> changes)
{
    const auto versions = [](const std::string& stamp) {
        return "TaskPriority=\"3\" TaskVersion=\"" + stamp + "\">\n" +
               Line(3, "<Task TaskVersion=\"" + stamp + "\" PathID=\"0_4\">");
    };
    changes.push_back({versions(kOldStamp), versions(kNewStamp)});
    return StampedTasks(std::move(changes));
}

}  // namespace zupm::test

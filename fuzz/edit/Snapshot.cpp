#include "fuzz/edit/Snapshot.h"

#include "fuzz/support/Demand.h"
#include "text/Decimal.h"

namespace zupm::fuzz {

namespace {

/// The known settings that an object has.
template <class Client>
Settings SettingsOf(const Client& client, const Known& known)
{
    Settings settings;
    for (const auto& [section, name] : known.settings) {
        const test::TextResult read = client.Get(section, name);
        Demand(read.code == 0 || read.code == result::SectionNotFound || read.code == result::SettingNotFound,
               "a setting is found or not found", std::to_string(read.code));
        Demand((read.code == 0) == read.text.has_value(), "a setting that is found has a value");
        if (read.text) {
            settings.emplace(NamePair(section, name), *read.text);
        }
    }
    return settings;
}

}  // namespace

Snapshot TakeSnapshot(const test::PolicyFileClient& file, const Known& known)
{
    Snapshot snapshot;
    for (const std::u16string& softwareId : known.products) {
        test::ProductClient product;
        const HRESULT code = file.GetPolicy(softwareId, product);
        Demand(code == 0 || code == result::PolicyNotFound, "a policy is found or not found", std::to_string(code));
        if (code == 0) {
            snapshot.products.emplace(softwareId, SettingsOf(product, known));
        }
    }
    for (const auto& [softwareId, taskId] : known.tasks) {
        test::TaskClient task;
        const HRESULT code = file.GetTask(softwareId, taskId, task);
        Demand(code == 0 || code == result::TaskNotFound, "a task is found or not found", std::to_string(code));
        if (code == 0) {
            snapshot.tasks.emplace(NamePair(softwareId, taskId), SettingsOf(task, known));
        }
    }
    snapshot.allTasks = file.Tasks().All();
    snapshot.text = file.Buffer();
    snapshot.assignmentList = file.AssignmentList().text;
    snapshot.policyVersion = ParseInt64(file.VersionPolicy().text.value());
    snapshot.taskVersion = ParseInt64(file.VersionTask().text.value());
    return snapshot;
}

}  // namespace zupm::fuzz

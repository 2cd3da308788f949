/// Lists a policy file, changes a setting, adds a product policy and a task, and saves it: a whole client.
///
/// Usage: new_entries FILE
#include <zuPolicyManager/Client.h>

#include <exception>
#include <iostream>

namespace {

void Edit(const char* path)
{
    const zupm::Runtime runtime;
    const auto file = zupm::PolicyFile::Open(path);
    for (auto& policy : file.Policies()) {
        std::cout << "policy " << policy.SoftwareId() << ": " << policy.SectionNames().size() << " sections\n";
    }
    for (auto& task : file.Tasks()) {
        std::cout << "task " << task.SoftwareId() << ' ' << task.TaskId() << ": " << task.DisplayName() << '\n';
    }
    file.Policy("PRODUCTA1000").Set("Notify", "Recipients", "it@example.org").HandBack();
    file.CreatePolicy("PRODUCTD4000").Set("General", "Enabled", "1").HandBack();
    auto task = file.CreateTask("PRODUCTD4000", "{task-1}");
    task.SetDisplayName("First run").SetType("Collect").SetPlatforms("LNX").SetCreator("EXAMPLE").SetPriority(3);
    task.Set("Schedule", "Hour", "4").HandBack();
    file.Save();  // throws zupm::Changed if another program changed the file meanwhile
    std::cout << "added policy PRODUCTD4000 and task PRODUCTD4000 {task-1}\n";
}

}  // namespace

int main(int count, char** arguments)
{
    if (count != 2) {
        std::cerr << "usage: new_entries FILE\n";
        return 2;
    }
    try {
        Edit(arguments[1]);
        return 0;
    } catch (const std::exception& error) {
        std::cerr << "new_entries: " << error.what() << '\n';
        return 1;
    }
}

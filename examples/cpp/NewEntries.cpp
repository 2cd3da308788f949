/// Adds a product policy and a task to a policy file: the shortest whole client, through the interfaces' vtables.
///
/// Usage: new_entries FILE
#include <zuPolicyManager/Owners.h>
#include <zuPolicyManager/zuPolicyManager.h>

#include <iostream>
#include <stdexcept>
#include <string>

namespace {

using zupm::Bstr;
using zupm::ComPtr;

void Check(HRESULT result, const char* step)
{
    if (result < 0) {
        throw std::runtime_error(std::string(step) + " failed: " + std::to_string(result));
    }
}

void AddPolicy(IPolicyFile& file)
{
    ComPtr<IPolicyProduct> policy;
    Check(file.CreatePolicy(policy.Put()), "CreatePolicy");
    Check(policy->put_SoftwareID(Bstr(u"PRODUCTD4000").Get()), "put_SoftwareID");
    Check(policy->PutSectionSetting(Bstr(u"General").Get(), Bstr(u"Enabled").Get(), Bstr(u"1").Get()),
          "PutSectionSetting");
    Check(file.AddPolicy(policy.Get(), 1), "AddPolicy");
}

void AddTask(IPolicyFile& file)
{
    ComPtr<IPolicyTask> task;
    Check(file.CreateTask(task.Put()), "CreateTask");
    if (!task) {
        throw std::runtime_error("CreateTask gave no task");
    }
    Check(task->put_SoftwareID(Bstr(u"PRODUCTD4000").Get()), "put_SoftwareID");
    Check(task->put_TaskID(Bstr(u"{task-1}").Get()), "put_TaskID");
    Check(task->put_DisplayName(Bstr(u"First run").Get()), "put_DisplayName");
    Check(task->put_TaskType(Bstr(u"Collect").Get()), "put_TaskType");
    Check(task->put_PlatformsSupported(Bstr(u"LNX").Get()), "put_PlatformsSupported");
    Check(task->put_CreatorID(Bstr(u"EXAMPLE").Get()), "put_CreatorID");
    Check(task->put_Priority(3), "put_Priority");
    Check(task->PutSectionSetting(Bstr(u"Schedule").Get(), Bstr(u"Hour").Get(), Bstr(u"4").Get()), "PutSectionSetting");
    Check(file.AddTask(task.Get(), 1), "AddTask");
}

void Edit(const std::string& ascii)
{
    const Bstr path(std::u16string(ascii.begin(), ascii.end()));
    ComPtr<IPolicyFile> file;
    Check(CoCreateInstance(CLSID_PolicyFile, nullptr, CLSCTX_INPROC_SERVER, IID_IPolicyFile, file.PutVoid()),
          "CoCreateInstance");
    Check(file->InitializeFile(path.Get(), 0), "InitializeFile");
    AddPolicy(*file);
    AddTask(*file);
    Check(file->WriteFile(path.Get(), 0), "WriteFile");
}

}  // namespace

int main(int count, char** arguments)
{
    if (count != 2) {
        std::cerr << "usage: new_entries FILE\n";
        return 2;
    }
    int exitCode = 1;
    if (CoInitializeEx(nullptr, COINIT_MULTITHREADED) >= 0) {
        try {
            Edit(arguments[1]);
            std::cout << "added policy PRODUCTD4000 and task PRODUCTD4000 {task-1}\n";
            exitCode = 0;
        } catch (const std::exception& error) {
            std::cerr << "new_entries: " << error.what() << "\n";
        }
        CoUninitialize();
    }
    return exitCode;
}

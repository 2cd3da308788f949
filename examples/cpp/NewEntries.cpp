/// Adds a product policy and a task to a policy file: the shortest whole client, through the interfaces' vtables.
///
/// Usage: new_entries FILE
#include <zuPolicyManager/zuPolicyManager.h>

#include <iostream>
#include <stdexcept>
#include <string>

namespace {

/// A string for the interfaces, made from ASCII.
class Text {
public:
    explicit Text(const std::string& ascii)
    {
        const std::basic_string<OLECHAR> wide(ascii.begin(), ascii.end());
        m_text = SysAllocStringLen(wide.data(), static_cast<UINT>(wide.size()));
    }
    Text(const Text&) = delete;
    Text& operator=(const Text&) = delete;
    ~Text() { SysFreeString(m_text); }

    operator BSTR() const { return m_text; }  // NOLINT(google-explicit-constructor): a Text is passed as a BSTR

private:
    BSTR m_text = nullptr;
};

/// One reference to an object, released at the end.
template <typename Interface>
struct Object {
    Object() = default;
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;
    ~Object()
    {
        if (pointer != nullptr) {
            pointer->Release();
        }
    }
    Interface* operator->() const { return pointer; }

    Interface* pointer = nullptr;
};

void Check(HRESULT result, const char* step)
{
    if (result < 0) {
        throw std::runtime_error(std::string(step) + " failed: " + std::to_string(result));
    }
}

void AddPolicy(IPolicyFile& file)
{
    Object<IPolicyProduct> policy;
    Check(file.CreatePolicy(&policy.pointer), "CreatePolicy");
    Check(policy->put_SoftwareID(Text("PRODUCTD4000")), "put_SoftwareID");
    Check(policy->PutSectionSetting(Text("General"), Text("Enabled"), Text("1")), "PutSectionSetting");
    Check(file.AddPolicy(policy.pointer, 1), "AddPolicy");
}

void AddTask(IPolicyFile& file)
{
    Object<IPolicyTask> task;
    Check(file.CreateTask(&task.pointer), "CreateTask");
    if (task.pointer == nullptr) {
        throw std::runtime_error("CreateTask gave no task");
    }
    Check(task->put_SoftwareID(Text("PRODUCTD4000")), "put_SoftwareID");
    Check(task->put_TaskID(Text("{task-1}")), "put_TaskID");
    Check(task->put_DisplayName(Text("First run")), "put_DisplayName");
    Check(task->put_TaskType(Text("Collect")), "put_TaskType");
    Check(task->put_PlatformsSupported(Text("LNX")), "put_PlatformsSupported");
    Check(task->put_CreatorID(Text("EXAMPLE")), "put_CreatorID");
    Check(task->put_Priority(3), "put_Priority");
    Check(task->PutSectionSetting(Text("Schedule"), Text("Hour"), Text("4")), "PutSectionSetting");
    Check(file.AddTask(task.pointer, 1), "AddTask");
}

void Edit(const char* path)
{
    Object<IPolicyFile> file;
    Check(CoCreateInstance(CLSID_PolicyFile, nullptr, CLSCTX_INPROC_SERVER, IID_IPolicyFile,
                           reinterpret_cast<void**>(&file.pointer)),
          "CoCreateInstance");
    Check(file->InitializeFile(Text(path), 0), "InitializeFile");
    AddPolicy(*file.pointer);
    AddTask(*file.pointer);
    Check(file->WriteFile(Text(path), 0), "WriteFile");
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

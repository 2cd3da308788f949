/// Uses the component without registration. The program's manifest names the component's assembly; the manifest of the
/// assembly lies beside the DLL in the program's folder.
///
/// Usage: regfree FILE      prints the interval of a product's policy and the first task
#include <zuPolicyManager/zuPolicyManager.h>

#include <cstdio>
#include <stdexcept>
#include <string>

namespace {

/// A string for the interfaces, or one that they hand out.
struct Text {
    Text() = default;
    explicit Text(const wchar_t* text) : value(SysAllocString(text)) {}
    Text(const Text&) = delete;
    Text& operator=(const Text&) = delete;
    ~Text() { SysFreeString(value); }

    BSTR value = nullptr;
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
    void** Slot() { return reinterpret_cast<void**>(&pointer); }

    Interface* pointer = nullptr;
};

void Check(HRESULT result, const char* step)
{
    if (result < 0) {
        throw std::runtime_error(std::string(step) + " failed: " + std::to_string(result));
    }
}

void Show(const wchar_t* path)
{
    Object<IPolicyFile> file;
    Check(CoCreateInstance(CLSID_PolicyFile, nullptr, CLSCTX_INPROC_SERVER, IID_IPolicyFile, file.Slot()),
          "CoCreateInstance");
    Check(file->InitializeFile(Text(path).value, 1), "InitializeFile");

    Object<IUnknown> unknown;
    Check(file->GetPolicy(Text(L"PRODUCTA1000").value, &unknown.pointer), "GetPolicy");
    Object<IPolicyProduct> policy;
    Check(unknown->QueryInterface(IID_IPolicyProduct, policy.Slot()), "QueryInterface");
    Text interval;
    Check(policy->GetSectionSetting(Text(L"General").value, Text(L"ScanInterval").value, &interval.value),
          "GetSectionSetting");

    Object<IUnknown> enumerator;
    Check(file->GetTaskInfo(&enumerator.pointer), "GetTaskInfo");
    Object<ITaskInfo> tasks;
    Check(enumerator->QueryInterface(IID_ITaskInfo, tasks.Slot()), "QueryInterface");
    Text softwareID;
    Text taskID;
    Check(tasks->GetFirst(&softwareID.value, &taskID.value), "GetFirst");

    std::printf("interval %ls, first task %ls %ls\n", interval.value, softwareID.value, taskID.value);
}

}  // namespace

int wmain(int count, wchar_t** arguments)
{
    if (count != 2) {
        std::fputs("usage: regfree FILE\n", stderr);
        return 2;
    }
    int exitCode = 1;
    // A single-threaded apartment, so that the calls are marshalled: marshalling works without registration too.
    if (CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED) >= 0) {
        try {
            Show(arguments[1]);
            exitCode = 0;
        } catch (const std::exception& error) {
            std::fprintf(stderr, "regfree: %s\n", error.what());
        }
        CoUninitialize();
    }
    return exitCode;
}

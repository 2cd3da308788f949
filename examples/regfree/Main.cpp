/// Uses the component without registration. The program's manifest names the component's assembly; the manifest of the
/// assembly lies beside the DLL in the program's folder.
///
/// Usage: regfree FILE      prints the interval of a product's policy and the first task
#include <zuPolicyManager/Owners.h>
#include <zuPolicyManager/zuPolicyManager.h>

#include <cstdio>
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

void Show(const std::wstring& path)
{
    ComPtr<IPolicyFile> file;
    Check(CoCreateInstance(CLSID_PolicyFile, nullptr, CLSCTX_INPROC_SERVER, IID_IPolicyFile, file.PutVoid()),
          "CoCreateInstance");
    Check(file->InitializeFile(Bstr(std::u16string(path.begin(), path.end())).Get(), 1), "InitializeFile");

    ComPtr<IUnknown> object;
    Check(file->GetPolicy(Bstr(u"PRODUCTA1000").Get(), object.Put()), "GetPolicy");
    ComPtr<IPolicyProduct> policy;
    Check(object.Query(IID_IPolicyProduct, policy), "QueryInterface");
    Bstr interval;
    Check(policy->GetSectionSetting(Bstr(u"General").Get(), Bstr(u"ScanInterval").Get(), interval.Slot()),
          "GetSectionSetting");

    Check(file->GetTaskInfo(object.Put()), "GetTaskInfo");
    ComPtr<ITaskInfo> tasks;
    Check(object.Query(IID_ITaskInfo, tasks), "QueryInterface");
    Bstr softwareID;
    Bstr taskID;
    Check(tasks->GetFirst(softwareID.Slot(), taskID.Slot()), "GetFirst");

    std::printf("interval %ls, first task %ls %ls\n", interval.Get(), softwareID.Get(), taskID.Get());
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

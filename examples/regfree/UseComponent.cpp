#include "UseComponent.h"

#include <zuPolicyManager/Owners.h>
#include <zuPolicyManager/zuPolicyManager.h>

#include <cstdio>
#include <stdexcept>

namespace {

using zupm::Bstr;
using zupm::ComPtr;

void Check(HRESULT result, const char* step)
{
    if (result < 0) {
        throw std::runtime_error(std::string(step) + " failed: " + std::to_string(result));
    }
}

}  // namespace

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

#include "bench/operations/Client.h"

#include <cstdio>
#include <cstdlib>

namespace zupm::bench {

namespace {

template <class Interface>
ComPtr<Interface> Create()
{
    ComPtr<Interface> object;
    DemandSuccess(CoCreateInstance(InterfaceTraits<Interface>::Class(), nullptr, CLSCTX_INPROC_SERVER,
                                   InterfaceTraits<Interface>::Id(), object.PutVoid()),
                  "CoCreateInstance");
    return object;
}

}  // namespace

Bstr Wide(const std::string& ascii)
{
    return std::u16string(ascii.begin(), ascii.end());
}

void DemandSuccess(HRESULT result, const char* call)
{
    if (result < 0) {
        std::fprintf(stderr, "%s failed: 0x%08X\n", call, static_cast<unsigned>(result));
        std::exit(1);
    }
}

ComPtr<IPolicyFile> NewPolicyFile()
{
    return Create<IPolicyFile>();
}

ComPtr<IPolicyFile> LoadedPolicyFile(const std::string& path)
{
    ComPtr<IPolicyFile> file = NewPolicyFile();
    DemandSuccess(file->InitializeFile(Wide(path).Get(), 0), "InitializeFile");
    return file;
}

ComPtr<IPolicyProduct> PolicyOf(IPolicyFile& file, const std::string& softwareId)
{
    ComPtr<IUnknown> object;
    DemandSuccess(file.GetPolicy(Wide(softwareId).Get(), object.Put()), "GetPolicy");
    ComPtr<IPolicyProduct> product;
    DemandSuccess(object.Query(IID_IPolicyProduct, product), "QueryInterface");
    return product;
}

ComPtr<ITaskInfo> TasksOf(IPolicyFile& file)
{
    ComPtr<IUnknown> object;
    DemandSuccess(file.GetTaskInfo(object.Put()), "GetTaskInfo");
    ComPtr<ITaskInfo> tasks;
    DemandSuccess(object.Query(IID_ITaskInfo, tasks), "QueryInterface");
    return tasks;
}

ComPtr<IPolicyTask> NewTask(const std::string& softwareId, const std::string& taskId)
{
    ComPtr<IPolicyTask> task = Create<IPolicyTask>();
    DemandSuccess(task->put_SoftwareID(Wide(softwareId).Get()), "put_SoftwareID");
    DemandSuccess(task->put_TaskID(Wide(taskId).Get()), "put_TaskID");
    return task;
}

}  // namespace zupm::bench

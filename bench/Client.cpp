#include "bench/Client.h"

#include <cstdio>
#include <cstdlib>

namespace zupm::bench {

namespace {

template <class Interface>
Owner<Interface> Create(const CLSID& clsid, const IID& iid)
{
    void* object = nullptr;
    Demand(CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, iid, &object), "CoCreateInstance");
    return Owner<Interface>(static_cast<Interface*>(object));
}

}  // namespace

OwnedString Wide(const std::string& ascii)
{
    const std::u16string text(ascii.begin(), ascii.end());
    return OwnedString(SysAllocStringLen(text.data(), static_cast<UINT>(text.size())));
}

void Demand(HRESULT result, const char* call)
{
    if (result < 0) {
        std::fprintf(stderr, "%s failed: 0x%08X\n", call, static_cast<unsigned>(result));
        std::exit(1);
    }
}

Owner<IPolicyFile> NewPolicyFile()
{
    return Create<IPolicyFile>(CLSID_PolicyFile, IID_IPolicyFile);
}

Owner<IPolicyFile> LoadedPolicyFile(const std::string& path)
{
    Owner<IPolicyFile> file = NewPolicyFile();
    Demand(file->InitializeFile(Wide(path).get(), 0), "InitializeFile");
    return file;
}

Owner<IPolicyProduct> PolicyOf(IPolicyFile& file, const std::string& softwareId)
{
    IUnknown* unknown = nullptr;
    Demand(file.GetPolicy(Wide(softwareId).get(), &unknown), "GetPolicy");
    const Owner<IUnknown> owner(unknown);
    void* product = nullptr;
    Demand(unknown->QueryInterface(IID_IPolicyProduct, &product), "QueryInterface");
    return Owner<IPolicyProduct>(static_cast<IPolicyProduct*>(product));
}

Owner<IPolicyTask> NewTask(const std::string& softwareId, const std::string& taskId)
{
    Owner<IPolicyTask> task = Create<IPolicyTask>(CLSID_PolicyTask, IID_IPolicyTask);
    Demand(task->put_SoftwareID(Wide(softwareId).get()), "put_SoftwareID");
    Demand(task->put_TaskID(Wide(taskId).get()), "put_TaskID");
    return task;
}

}  // namespace zupm::bench

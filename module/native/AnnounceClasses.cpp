#include "module/native/AnnounceClasses.h"

#include <iterator>

#include "module/ModuleServer.h"

namespace zupm {

namespace {

constexpr WideLiteral kTaskInfo{"ZuPolicyManager.TaskInfo"};
constexpr WideLiteral kPolicyTask{"ZuPolicyManager.PolicyTask"};
constexpr WideLiteral kPolicyProduct{"ZuPolicyManager.PolicyProduct"};
constexpr WideLiteral kPolicyFile{"ZuPolicyManager.PolicyFile"};

constexpr ZuClassEntry kEntries[] = {
    {CLSID_TaskInfo, kProgIdTaskInfo.c_str()},           {CLSID_TaskInfo, kTaskInfo.c_str()},
    {CLSID_PolicyTask, kProgIdPolicyTask.c_str()},       {CLSID_PolicyTask, kPolicyTask.c_str()},
    {CLSID_PolicyProduct, kProgIdPolicyProduct.c_str()}, {CLSID_PolicyProduct, kPolicyProduct.c_str()},
    {CLSID_PolicyFile, kProgIdPolicyFile.c_str()},       {CLSID_PolicyFile, kPolicyFile.c_str()},
};

}  // namespace

HRESULT AnnounceClasses() noexcept
{
    return ZuAnnounceModule(kEntries, std::size(kEntries), &ModuleGetClassObject);
}

void WithdrawClasses() noexcept
{
    ZuWithdrawModule(&ModuleGetClassObject);
}

}  // namespace zupm

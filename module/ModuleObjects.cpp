#include "module/ModuleObjects.h"

#include "policy/CPolicyProduct.h"
#include "policyfile/CPolicyFile.h"
#include "policyfile/CTaskInfo.h"
#include "task/CPolicyTask.h"
#include "zuPolicyManager/zuPolicyManager.h"

namespace zupm {

namespace {

constexpr ObjectMapRow kObjects[] = {
    {CLSID_TaskInfo, kProgIdTaskInfo.c_str(), &CreateObject<CTaskInfo>, 101},
    {CLSID_PolicyTask, kProgIdPolicyTask.c_str(), &CreateObject<CPolicyTask>, 102},
    {CLSID_PolicyProduct, kProgIdPolicyProduct.c_str(), &CreateObject<CPolicyProduct>, 103},
    {CLSID_PolicyFile, kProgIdPolicyFile.c_str(), &CreateObject<CPolicyFile>, 104},
};

}  // namespace

ObjectMap ModuleObjects() noexcept
{
    return kObjects;
}

}  // namespace zupm

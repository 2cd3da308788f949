/// The classes that the module offers, one row each.
#pragma once

#include "com/ObjectMap.h"
#include "policy/CPolicyProduct.h"
#include "policyfile/CPolicyFile.h"
#include "policyfile/CTaskInfo.h"
#include "task/CPolicyTask.h"
#include "zuPolicyManager/zuPolicyManager.h"

namespace zupm {

/// The object map; its order is the order of look-up and registration. CMakeLists.txt makes the scripts, whose numbers
/// are the last column.
inline constexpr ObjectMapRow kModuleObjects[] = {
    {CLSID_TaskInfo, kProgIdTaskInfo.c_str(), &CreateObject<CTaskInfo>, 101},
    {CLSID_PolicyTask, kProgIdPolicyTask.c_str(), &CreateObject<CPolicyTask>, 102},
    {CLSID_PolicyProduct, kProgIdPolicyProduct.c_str(), &CreateObject<CPolicyProduct>, 103},
    {CLSID_PolicyFile, kProgIdPolicyFile.c_str(), &CreateObject<CPolicyFile>, 104},
};

}  // namespace zupm

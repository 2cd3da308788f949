#include "com/DispatchThunk.h"
#include "interfaces/InterfaceTables.h"
#include "zuPolicyManager/zuPolicyManager.h"

namespace zupm {

namespace {

constexpr Member kPolicyFileMembers[] = {
    MethodRow<&IPolicyFile::AddTask, u"pTask", u"bOverwrite">(
        1, u"AddTask", "Puts a copy of a task into the file, in place of one with the same IDs"),
    MethodRow<&IPolicyFile::AddPolicy, u"pPolicy", u"bOverwrite">(
        2, u"AddPolicy", "Puts a copy of a product policy into the file, in place of one with the same software ID"),
    MethodRow<&IPolicyFile::GetTask, u"strSoftwareID", u"strTaskID", u"pTask">(
        3, u"GetTask", "Returns a task as an object with a private copy"),
    MethodRow<&IPolicyFile::GetPolicy, u"strSoftwareID", u"pPolicy">(
        4, u"GetPolicy", "Returns a product policy as an object with a private copy"),
    MethodRow<&IPolicyFile::RemovePolicy, u"strSoftwareID">(5, u"RemovePolicy",
                                                            "Removes a product policy from the file"),
    MethodRow<&IPolicyFile::RemoveTask, u"strSoftwareID", u"strTaskID">(6, u"RemoveTask",
                                                                        "Removes a task from the file"),
    MethodRow<&IPolicyFile::InitializeFile, u"strPolicyFile", u"bReadOnly">(7, u"InitializeFile",
                                                                            "Loads a policy file"),
    MethodRow<&IPolicyFile::WriteFile, u"strPolicyFile", u"bUseInternal">(8, u"WriteFile",
                                                                          "Writes the policy file to the given path"),
    MethodRow<&IPolicyFile::GetTaskInfo, u"pTaskInfo">(9, u"GetTaskInfo", "Returns an enumerator over the tasks"),
    MethodRow<&IPolicyFile::CreateTask, u"pTask">(10, u"CreateTask", "Creates an empty task"),
    MethodRow<&IPolicyFile::CreatePolicy, u"pPolicy">(11, u"CreatePolicy", "Creates an empty product policy"),
    MethodRow<&IPolicyFile::WriteFileBuffer, u"pbstrFileBuffer">(12, u"WriteFileBuffer",
                                                                 "Returns the policy file as text"),
    GetRow<&IPolicyFile::get_VersionTask, u"pVal">(13, u"VersionTask", "The version of the tasks"),
    GetRow<&IPolicyFile::get_VersionPolicy, u"pVal">(14, u"VersionPolicy", "The version of the policies"),
    GetRow<&IPolicyFile::get_PolicyAssignmentList, u"pVal">(15, u"PolicyAssignmentList", "The policy assignment list"),
};

constexpr InterfaceDescription kPolicyFileDescription{IID_IPolicyFile, u"IPolicyFile", kPolicyFileMembers};

}  // namespace

const InterfaceDescription& PolicyFileInterface() noexcept
{
    return kPolicyFileDescription;
}

}  // namespace zupm

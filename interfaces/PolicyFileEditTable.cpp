#include "com/DispatchThunk.h"
#include "interfaces/InterfaceTables.h"
#include "zuPolicyManager/zuPolicyManager.h"

namespace zupm {

namespace {

constexpr Member kPolicyFileEditMembers[] = {
    MethodRow<&IPolicyFileEdit::OpenForEdit, u"strPolicyFile", u"lTimeout">(
        1011, u"OpenForEdit", "Opens, locks and loads a policy file that is going to be replaced"),
    MethodRow<&IPolicyFileEdit::HasFileChanged, u"plChanged">(1012, u"HasFileChanged",
                                                              "Whether the file is no longer the one that was loaded"),
    MethodRow<&IPolicyFileEdit::RehearseCommit, u"bForce">(1013, u"RehearseCommit",
                                                           "Answers whether CommitEdit would be refused"),
    MethodRow<&IPolicyFileEdit::CommitEdit, u"bForce">(1014, u"CommitEdit",
                                                       "Replaces the file if it is still the one that was loaded"),
    MethodRow<&IPolicyFileEdit::EndEdit>(1015, u"EndEdit", "Ends the edit without writing"),
};

constexpr InterfaceDescription kPolicyFileEditDescription{IID_IPolicyFileEdit, u"IPolicyFileEdit",
                                                          kPolicyFileEditMembers};

}  // namespace

const InterfaceDescription& PolicyFileEditInterface() noexcept
{
    return kPolicyFileEditDescription;
}

}  // namespace zupm

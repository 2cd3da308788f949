// Listing what the file has: IPolicyFileContents.
#include "names/CPolicyNames.h"
#include "policyfile/CPolicyFile.h"
#include "zuPolicyManager/Owners.h"

namespace zupm {

template <class Names>
HRESULT CPolicyFile::ListNames(std::u16string_view operation, IPolicyNames** slot, Names names) noexcept
{
    return CallOf(IID_IPolicyFileContents, operation, [&] {
        return HandOutNames(slot, [&](NameList& list) -> result::Code {
            const CriticalSectionLock lock(m_lock);
            const result::Code code = CheckInitialised();
            if (code >= 0) {
                list = names(m_data);
            }
            return code;
        });
    });
}

HRESULT CPolicyFile::get_PolicyIDs(IPolicyNames** pVal) noexcept
{
    return ListNames(u"CPolicyFile::get_PolicyIDs()", pVal,
                     [](const CPolicyFileData& data) { return data.PolicyIds(); });
}

HRESULT CPolicyFile::get_TaskSoftwareIDs(IPolicyNames** pVal) noexcept
{
    return ListNames(u"CPolicyFile::get_TaskSoftwareIDs()", pVal,
                     [](const CPolicyFileData& data) { return data.TaskSoftwareIds(); });
}

HRESULT CPolicyFile::GetTaskIDs(BSTR strSoftwareID, IPolicyNames** pNames) noexcept
{
    return ListNames(u"CPolicyFile::GetTaskIDs()", pNames,
                     [&](const CPolicyFileData& data) { return data.TaskIds(TextOf(strSoftwareID)); });
}

}  // namespace zupm

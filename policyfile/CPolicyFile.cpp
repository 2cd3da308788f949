// Loading, writing, the properties and blank objects.
#include "policyfile/CPolicyFile.h"

#include <new>

#include "com/Strings.h"
#include "text/Decimal.h"
#include "xml/Exceptions.h"
#include "xml/FileBuffer.h"
#include "zuPolicyManager/zuPolicyManager.h"

namespace zupm {

namespace {

/// Wherever the class may be served from: in process, handler, local and remote server.
constexpr DWORD kAnyServer = 0x17;

/// The properties give the platform's code where other getters give the component's own.
// Given: see docs/given-oddities.md, "two codes for no memory".
result::Code StoreProperty(BSTR* slot, std::u16string_view text) noexcept
{
    const result::Code code = StoreString(slot, text);
    return code == result::AllocationFailed ? result::OutOfMemory : code;
}

}  // namespace

CPolicyFile::CPolicyFile() : m_data(m_properties) {}

HRESULT CPolicyFile::FinalConstruct() noexcept
{
    return Call(kCreation, [] { return ResourceModuleUse::EnsureLoaded(); });
}

HRESULT CPolicyFile::InitializeFile(BSTR strPolicyFile, LONG bReadOnly) noexcept
{
    return Call(u"CPolicyFile::InitializeFile()", [&](std::u16string& detail) -> result::Code {
        std::u16string path = TextOf(strPolicyFile);
        const CriticalSectionLock lock(m_lock);
        m_edited.Close();
        m_readOnly = bReadOnly;
        return m_data.InitializeFile(std::move(path), detail);
    });
}

// Given: see docs/given-oddities.md, "the internal path".
HRESULT CPolicyFile::WriteFile(BSTR strPolicyFile, LONG /*bUseInternal*/) noexcept
{
    return Call(u"CPolicyFile::WriteFile()", [&]() -> result::Code {
        const std::u16string path = TextOf(strPolicyFile);
        const CriticalSectionLock lock(m_lock);
        if (!m_data.HasDocument()) {
            return result::NotInitialised;
        }
        try {
            m_data.StampVersions();
            WriteRunsToFile(path, m_data.Runs(), m_data.Encoding(), true);
            return result::Success;
        } catch (const AdvXMLParser::ReadWriteException& error) {
            return error.GetErrorCode();
        }
    });
}

HRESULT CPolicyFile::WriteFileBuffer(BSTR* pbstrFileBuffer) noexcept
{
    return Call(u"CPolicyFile::WriteFileBuffer()", [&]() -> result::Code {
        if (pbstrFileBuffer == nullptr) {
            return result::BadArgument;
        }
        const CriticalSectionLock lock(m_lock);
        if (!m_data.HasDocument()) {
            ClearString(pbstrFileBuffer);
            return result::Success;
        }
        try {
            // Given: see docs/given-oddities.md, "a buffer never fails".
            // A lack of memory is not reported: it leaves the slot null.
            static_cast<void>(StoreUtf8(pbstrFileBuffer, m_data.Runs()));
        } catch (const std::bad_alloc&) {
            ClearString(pbstrFileBuffer);
        }
        return result::Success;
    });
}

HRESULT CPolicyFile::get_VersionTask(BSTR* pVal) noexcept
{
    return Call(u"CPolicyFile::get_VersionTask()",
                [&]() -> result::Code { return StoreProperty(pVal, FormatUnsigned(m_properties.taskVersion)); });
}

HRESULT CPolicyFile::get_VersionPolicy(BSTR* pVal) noexcept
{
    return Call(u"CPolicyFile::get_VersionPolicy()",
                [&]() -> result::Code { return StoreProperty(pVal, FormatUnsigned(m_properties.policyVersion)); });
}

HRESULT CPolicyFile::get_PolicyAssignmentList(BSTR* pVal) noexcept
{
    return Call(u"CPolicyFile::get_PolicyAssignmentList()",
                [&]() -> result::Code { return StoreProperty(pVal, *m_properties.assignmentList.Get()); });
}

HRESULT CPolicyFile::CreateTask(IPolicyTask** pTask) noexcept
{
    return Call(u"CPolicyFile::CreateTask()", [&]() -> result::Code {
        // Given: see docs/given-oddities.md, "CreateTask succeeds".
        // Unlike in CreatePolicy the platform's result is dropped.
        static_cast<void>(
            CoCreateInstance(CLSID_PolicyTask, nullptr, kAnyServer, IID_IPolicyTask, reinterpret_cast<void**>(pTask)));
        return result::Success;
    });
}

HRESULT CPolicyFile::CreatePolicy(IPolicyProduct** pPolicy) noexcept
{
    return Call(u"CPolicyFile::CreatePolicy()", [&]() -> result::Code {
        if (pPolicy == nullptr) {
            return result::BadArgument;
        }
        return CoCreateInstance(CLSID_PolicyProduct, nullptr, kAnyServer, IID_IPolicyProduct,
                                reinterpret_cast<void**>(pPolicy));
    });
}

result::Code CPolicyFile::CheckWritable() const noexcept
{
    return m_readOnly != 0 ? result::ReadOnly : result::Success;
}

result::Code CPolicyFile::CheckInitialised() const noexcept
{
    return m_data.IsInitialised() ? result::Success : result::NotInitialised;
}

}  // namespace zupm

// The identity fields of CPolicyTask.
#include "com/Strings.h"
#include "task/CPolicyTask.h"

namespace zupm {

HRESULT CPolicyTask::GetField(std::u16string_view operation, TextField field, BSTR* slot) noexcept
{
    return Call(operation, [&]() -> result::Code {
        ClearString(slot);
        const CriticalSectionLock lock(m_lock);
        return StoreString(slot, m_data.Fields().*field);
    });
}

HRESULT CPolicyTask::PutField(std::u16string_view operation, TextField field, BSTR value) noexcept
{
    return Call(operation, [&]() -> result::Code {
        const CriticalSectionLock lock(m_lock);
        m_data.Fields().*field = TextOf(value);
        return result::Success;
    });
}

HRESULT CPolicyTask::get_CreatorID(BSTR* pVal) noexcept
{
    return GetField(u"CPolicyTask::get_CreatorID()", &TaskFields::creatorId, pVal);
}

HRESULT CPolicyTask::put_CreatorID(BSTR newVal) noexcept
{
    return PutField(u"CPolicyTask::put_CreatorID()", &TaskFields::creatorId, newVal);
}

HRESULT CPolicyTask::get_SoftwareID(BSTR* pVal) noexcept
{
    return GetField(u"CPolicyTask::get_SoftwareID()", &TaskFields::softwareId, pVal);
}

HRESULT CPolicyTask::put_SoftwareID(BSTR newVal) noexcept
{
    return PutField(u"CPolicyTask::put_SoftwareID()", &TaskFields::softwareId, newVal);
}

HRESULT CPolicyTask::get_TaskID(BSTR* pVal) noexcept
{
    return GetField(u"CPolicyTask::get_TaskID()", &TaskFields::taskId, pVal);
}

HRESULT CPolicyTask::put_TaskID(BSTR newVal) noexcept
{
    return PutField(u"CPolicyTask::put_TaskID()", &TaskFields::taskId, newVal);
}

HRESULT CPolicyTask::get_DisplayName(BSTR* pVal) noexcept
{
    return GetField(u"CPolicyTask::get_DisplayName()", &TaskFields::displayName, pVal);
}

HRESULT CPolicyTask::put_DisplayName(BSTR newVal) noexcept
{
    return PutField(u"CPolicyTask::put_DisplayName()", &TaskFields::displayName, newVal);
}

HRESULT CPolicyTask::get_TaskType(BSTR* pVal) noexcept
{
    return GetField(u"CPolicyTask::get_TaskType()", &TaskFields::taskType, pVal);
}

HRESULT CPolicyTask::put_TaskType(BSTR newVal) noexcept
{
    return PutField(u"CPolicyTask::put_TaskType()", &TaskFields::taskType, newVal);
}

HRESULT CPolicyTask::get_PlatformsSupported(BSTR* pVal) noexcept
{
    return GetField(u"CPolicyTask::get_PlatformsSupported()", &TaskFields::platformsSupported, pVal);
}

HRESULT CPolicyTask::put_PlatformsSupported(BSTR newVal) noexcept
{
    return PutField(u"CPolicyTask::put_PlatformsSupported()", &TaskFields::platformsSupported, newVal);
}

HRESULT CPolicyTask::get_Priority(LONG* pVal) noexcept
{
    return Call(u"CPolicyTask::get_Priority()", [&]() -> result::Code {
        if (pVal == nullptr) {
            return result::BadArgument;
        }
        const CriticalSectionLock lock(m_lock);
        *pVal = m_data.Fields().priority;
        return result::Success;
    });
}

HRESULT CPolicyTask::put_Priority(LONG newVal) noexcept
{
    return Call(u"CPolicyTask::put_Priority()", [&]() -> result::Code {
        const CriticalSectionLock lock(m_lock);
        m_data.Fields().priority = newVal;
        return result::Success;
    });
}

HRESULT CPolicyTask::get_Version(BSTR* pstrValue) noexcept
{
    return Call(u"CPolicyTask::get_Version()", [&]() -> result::Code {
        const CriticalSectionLock lock(m_lock);
        // Given: see docs/given-oddities.md, "a slot that is not freed".
        return OverwriteString(pstrValue, m_data.Fields().version);
    });
}

}  // namespace zupm

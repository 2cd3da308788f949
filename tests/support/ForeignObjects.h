/// Products and tasks that are not the component's own: a policy file takes whatever offers the interface.
#pragma once

#include <atomic>
#include <string>

#include "tests/support/Bstr.h"
#include "zuPolicyManager/zuPolicyManager.h"

namespace zupm::test {

/// What a foreign object answers: a text when the code is 0.
struct Answer {
    HRESULT code = 0;
    std::u16string text;

    HRESULT Give(BSTR* slot) const
    {
        if (code == 0) {
            SysFreeString(*slot);
            *slot = NewString(text);
        }
        return code;
    }
};

/// Lives on the stack of a test; offers `Interface` and counts its references.
template <class Interface>
class ForeignObject : public Interface {
public:
    explicit ForeignObject(const IID& iid) : m_iid(iid) {}
    virtual ~ForeignObject() = default;
    ForeignObject(const ForeignObject&) = delete;
    ForeignObject& operator=(const ForeignObject&) = delete;

    /// How many references others still hold.
    [[nodiscard]] ULONG References() const { return m_references; }

    HRESULT QueryInterface(REFIID iid, void** out) override
    {
        const bool known = iid == m_iid || iid == IID_IUnknown || iid == IID_IDispatch;
        *out = known ? static_cast<Interface*>(this) : nullptr;
        m_references += known ? 1U : 0U;
        return known ? S_OK : E_NOINTERFACE;
    }
    ULONG AddRef() override { return ++m_references; }
    ULONG Release() override { return --m_references; }
    HRESULT GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    HRESULT GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
    HRESULT Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override { return E_NOTIMPL; }

private:
    IID m_iid;
    std::atomic<ULONG> m_references = 0;
};

/// Answers its ID and its data; nothing else.
class ForeignProduct : public ForeignObject<IPolicyProduct> {
public:
    ForeignProduct(Answer softwareId, Answer data)
        : ForeignObject(IID_IPolicyProduct), m_softwareId(std::move(softwareId)), m_data(std::move(data))
    {
    }

    HRESULT get_SoftwareID(BSTR* pVal) override { return m_softwareId.Give(pVal); }
    HRESULT put_SoftwareID(BSTR) override { return E_NOTIMPL; }
    HRESULT get_PolicyData(BSTR* pVal) override { return m_data.Give(pVal); }
    HRESULT put_Section(BSTR) override { return E_NOTIMPL; }
    HRESULT GetSetting(BSTR, BSTR*) override { return E_NOTIMPL; }
    HRESULT PutSetting(BSTR, BSTR) override { return E_NOTIMPL; }
    HRESULT GetSectionSetting(BSTR, BSTR, BSTR*) override { return E_NOTIMPL; }
    HRESULT PutSectionSetting(BSTR, BSTR, BSTR) override { return E_NOTIMPL; }
    HRESULT RemoveSetting(BSTR, BSTR) override { return E_NOTIMPL; }
    HRESULT RemoveSection(BSTR) override { return E_NOTIMPL; }

private:
    Answer m_softwareId;
    Answer m_data;
};

/// Answers its IDs and its data; nothing else.
class ForeignTask : public ForeignObject<IPolicyTask> {
public:
    ForeignTask(Answer softwareId, Answer taskId, Answer data)
        : ForeignObject(IID_IPolicyTask),
          m_softwareId(std::move(softwareId)),
          m_taskId(std::move(taskId)),
          m_data(std::move(data))
    {
    }

    HRESULT get_CreatorID(BSTR*) override { return E_NOTIMPL; }
    HRESULT put_CreatorID(BSTR) override { return E_NOTIMPL; }
    HRESULT get_SoftwareID(BSTR* pVal) override { return m_softwareId.Give(pVal); }
    HRESULT put_SoftwareID(BSTR) override { return E_NOTIMPL; }
    HRESULT get_TaskID(BSTR* pVal) override { return m_taskId.Give(pVal); }
    HRESULT put_TaskID(BSTR) override { return E_NOTIMPL; }
    HRESULT get_DisplayName(BSTR*) override { return E_NOTIMPL; }
    HRESULT put_DisplayName(BSTR) override { return E_NOTIMPL; }
    HRESULT get_TaskType(BSTR*) override { return E_NOTIMPL; }
    HRESULT put_TaskType(BSTR) override { return E_NOTIMPL; }
    HRESULT get_PlatformsSupported(BSTR*) override { return E_NOTIMPL; }
    HRESULT put_PlatformsSupported(BSTR) override { return E_NOTIMPL; }
    HRESULT get_Priority(LONG*) override { return E_NOTIMPL; }
    HRESULT put_Priority(LONG) override { return E_NOTIMPL; }
    HRESULT get_TaskData(BSTR* pVal) override { return m_data.Give(pVal); }
    HRESULT put_Section(BSTR) override { return E_NOTIMPL; }
    HRESULT GetSetting(BSTR, BSTR*) override { return E_NOTIMPL; }
    HRESULT PutSetting(BSTR, BSTR) override { return E_NOTIMPL; }
    HRESULT GetSectionSetting(BSTR, BSTR, BSTR*) override { return E_NOTIMPL; }
    HRESULT PutSectionSetting(BSTR, BSTR, BSTR) override { return E_NOTIMPL; }
    HRESULT RemoveSetting(BSTR, BSTR) override { return E_NOTIMPL; }
    HRESULT RemoveSection(BSTR) override { return E_NOTIMPL; }
    HRESULT WriteTaskDataToIniFile(BSTR) override { return E_NOTIMPL; }
    HRESULT get_Version(BSTR*) override { return E_NOTIMPL; }

private:
    Answer m_softwareId;
    Answer m_taskId;
    Answer m_data;
};

}  // namespace zupm::test

/// Objects of another maker, as AddPolicy and AddTask may get them.
#pragma once

#include <string>

#include "tests/support/Bstr.h"
#include "tests/support/ComPtr.h"

namespace zupm::test {

/// Identity, and dispatch that nobody calls, for an object on a test's stack: not counted, but it tells how many
/// references are out.
template <class Interface>
class FakeObject : public Interface {
public:
    FakeObject() = default;
    FakeObject(const FakeObject&) = delete;
    FakeObject& operator=(const FakeObject&) = delete;

    [[nodiscard]] ULONG References() const { return m_references; }

    HRESULT QueryInterface(REFIID iid, void** out) override
    {
        const bool own = iid == IID_IUnknown || iid == IID_IDispatch || iid == InterfaceTraits<Interface>::Id();
        *out = own ? static_cast<Interface*>(this) : nullptr;
        m_references += own ? 1U : 0U;
        return own ? S_OK : E_NOINTERFACE;
    }
    ULONG AddRef() override { return ++m_references; }
    ULONG Release() override { return --m_references; }
    HRESULT GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    HRESULT GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
    HRESULT Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override { return E_NOTIMPL; }

private:
    ULONG m_references = 0;
};

/// What a getter of a fake answers.
struct Answer {
    HRESULT code = S_OK;
    std::u16string text;

    HRESULT operator()(BSTR* slot) const
    {
        if (code == S_OK && slot != nullptr) {
            *slot = NewString(text);
        }
        return code;
    }
};

/// A product that answers what a test says.
class FakeProduct final : public FakeObject<IPolicyProduct> {
public:
    Answer softwareId;
    Answer data;

    HRESULT get_SoftwareID(BSTR* slot) override { return softwareId(slot); }
    HRESULT get_PolicyData(BSTR* slot) override { return data(slot); }
    HRESULT put_SoftwareID(BSTR) override { return E_NOTIMPL; }
    HRESULT put_Section(BSTR) override { return E_NOTIMPL; }
    HRESULT GetSetting(BSTR, BSTR*) override { return E_NOTIMPL; }
    HRESULT PutSetting(BSTR, BSTR) override { return E_NOTIMPL; }
    HRESULT GetSectionSetting(BSTR, BSTR, BSTR*) override { return E_NOTIMPL; }
    HRESULT PutSectionSetting(BSTR, BSTR, BSTR) override { return E_NOTIMPL; }
    HRESULT RemoveSetting(BSTR, BSTR) override { return E_NOTIMPL; }
    HRESULT RemoveSection(BSTR) override { return E_NOTIMPL; }
};

/// A task that answers what a test says.
class FakeTask final : public FakeObject<IPolicyTask> {
public:
    Answer softwareId;
    Answer taskId;
    Answer data;

    HRESULT get_SoftwareID(BSTR* slot) override { return softwareId(slot); }
    HRESULT get_TaskID(BSTR* slot) override { return taskId(slot); }
    HRESULT get_TaskData(BSTR* slot) override { return data(slot); }
    HRESULT get_CreatorID(BSTR*) override { return E_NOTIMPL; }
    HRESULT put_CreatorID(BSTR) override { return E_NOTIMPL; }
    HRESULT get_DisplayName(BSTR*) override { return E_NOTIMPL; }
    HRESULT put_DisplayName(BSTR) override { return E_NOTIMPL; }
    HRESULT get_TaskType(BSTR*) override { return E_NOTIMPL; }
    HRESULT put_TaskType(BSTR) override { return E_NOTIMPL; }
    HRESULT get_PlatformsSupported(BSTR*) override { return E_NOTIMPL; }
    HRESULT put_PlatformsSupported(BSTR) override { return E_NOTIMPL; }
    HRESULT put_SoftwareID(BSTR) override { return E_NOTIMPL; }
    HRESULT put_TaskID(BSTR) override { return E_NOTIMPL; }
    HRESULT get_Priority(LONG*) override { return E_NOTIMPL; }
    HRESULT put_Priority(LONG) override { return E_NOTIMPL; }
    HRESULT put_Section(BSTR) override { return E_NOTIMPL; }
    HRESULT GetSetting(BSTR, BSTR*) override { return E_NOTIMPL; }
    HRESULT PutSetting(BSTR, BSTR) override { return E_NOTIMPL; }
    HRESULT GetSectionSetting(BSTR, BSTR, BSTR*) override { return E_NOTIMPL; }
    HRESULT PutSectionSetting(BSTR, BSTR, BSTR) override { return E_NOTIMPL; }
    HRESULT RemoveSetting(BSTR, BSTR) override { return E_NOTIMPL; }
    HRESULT RemoveSection(BSTR) override { return E_NOTIMPL; }
    HRESULT WriteTaskDataToIniFile(BSTR) override { return E_NOTIMPL; }
    HRESULT get_Version(BSTR*) override { return E_NOTIMPL; }
};

}  // namespace zupm::test

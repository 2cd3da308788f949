/// The section and setting members that products and tasks have in common, however they are called.
#pragma once

#include <memory>
#include <string>

#include "tests/support/Bstr.h"
#include "tests/support/ComPtr.h"
#include "tests/support/Outs.h"

namespace zupm::test {

enum class ObjectKind { Product, Task };

/// How a member is called: through its slot, by name with the out as a by-reference argument, or by name with the out
/// as the call's value.
enum class CallForm { Slot, ByReference, ForResult };

/// One product or task, called in one form.
class SectionMembers {
public:
    virtual ~SectionMembers() = default;

    virtual HRESULT PutSection(const Bstr& section) = 0;
    virtual HRESULT GetSetting(const Bstr& name, OutText& value) = 0;
    virtual HRESULT PutSetting(const Bstr& name, const Bstr& value) = 0;
    virtual HRESULT GetSectionSetting(const Bstr& section, const Bstr& name, OutText& value) = 0;
    virtual HRESULT PutSectionSetting(const Bstr& section, const Bstr& name, const Bstr& value) = 0;
    virtual HRESULT RemoveSetting(const Bstr& section, const Bstr& name) = 0;
    virtual HRESULT RemoveSection(const Bstr& section) = 0;
    virtual HRESULT GetSectionNames(OutObject<IPolicyNames>& names) = 0;
    virtual HRESULT GetSettingNames(const Bstr& section, OutObject<IPolicyNames>& names) = 0;
    virtual HRESULT GetStoredSetting(const Bstr& section, const Bstr& name, OutText& value) = 0;
    virtual HRESULT GetTakenVersion(OutText& value) = 0;
    /// PolicyData or TaskData.
    virtual HRESULT GetData(OutText& value) = 0;

    /// What the last call left as error information; empty after a success.
    [[nodiscard]] const std::u16string& Failure() const { return m_failure; }

protected:
    std::u16string m_failure;
};

/// `object` is an IPolicyProduct or an IPolicyTask, as `kind` says.
[[nodiscard]] std::unique_ptr<SectionMembers> CallsOf(ObjectKind kind, CallForm form, ComPtr<IDispatch> object);

}  // namespace zupm::test

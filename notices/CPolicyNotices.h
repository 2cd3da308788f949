/// The object that lists notices.
#pragma once

#include <utility>

#include "com/DualObject.h"
#include "interfaces/InterfaceTables.h"
#include "notices/Notices.h"
#include "zuPolicyManager/zuPolicyManager.h"

namespace zupm {

/// The notices on a document as an object. No client creates one: a policy file hands it out.
///
/// Lifetime  Counted; owns its notices and knows nothing of the file. Needs no resource module, so it has no part in
///           loading and releasing that.
/// Threads   No lock: nothing changes.
/// Errors    Result codes; BadArgument for a null slot and for a place outside the list.
class CPolicyNotices : public DualObject<CPolicyNotices, IPolicyNotices> {
public:
    static constexpr std::u16string_view kCoclass = u"PolicyNotices";
    static constexpr std::u16string_view kCreation = u"CPolicyNotices::FinalConstruct()";
    static const InterfaceDescription& Description() noexcept { return PolicyNoticesInterface(); }

    explicit CPolicyNotices(Notices& notices) : m_notices(std::move(notices)) {}
    CPolicyNotices(const CPolicyNotices&) = delete;
    CPolicyNotices& operator=(const CPolicyNotices&) = delete;

    HRESULT FinalConstruct() noexcept { return S_OK; }

    HRESULT get_Count(LONG* pVal) noexcept override;
    HRESULT get_Kind(LONG lIndex, LONG* pVal) noexcept override;
    HRESULT get_Line(LONG lIndex, LONG* pVal) noexcept override;
    HRESULT get_Column(LONG lIndex, LONG* pVal) noexcept override;
    HRESULT get_SoftwareID(LONG lIndex, BSTR* pVal) noexcept override;
    HRESULT get_TaskID(LONG lIndex, BSTR* pVal) noexcept override;
    HRESULT get_Text(LONG lIndex, BSTR* pVal) noexcept override;

    /// Hands out a new object with these notices. The creation codes; throws std::bad_alloc. The slot is untouched on
    /// failure.
    [[nodiscard]] static result::Code HandOut(Notices notices, IPolicyNotices** slot);

protected:
    ~CPolicyNotices() = default;

private:
    /// Writes `value(index)` into the slot of a property.
    template <class Value>
    HRESULT GetNumber(std::u16string_view operation, LONG index, LONG* slot, Value value) const noexcept;
    template <class Value>
    HRESULT GetText(std::u16string_view operation, LONG index, BSTR* slot, Value value) const noexcept;
    [[nodiscard]] bool Has(LONG index) const noexcept;

    const Notices m_notices;
};

}  // namespace zupm

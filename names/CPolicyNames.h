/// The object that lists names.
#pragma once

#include <memory>
#include <string_view>
#include <utility>

#include "com/DualObject.h"
#include "interfaces/InterfaceTables.h"
#include "settings/NameList.h"
#include "zuPolicyManager/zuPolicyManager.h"

namespace zupm {

/// A list of names as an object. No client creates one: the methods that list something hand it out.
///
/// Lifetime  Counted; shares the list with its enumerators and knows nothing of where the names are from. Needs no
///           resource module, so it has no part in loading and releasing that.
/// Threads   No lock: nothing changes.
/// Errors    Result codes; BadArgument for a null slot and for a place outside the list.
class CPolicyNames : public DualObject<CPolicyNames, IPolicyNames> {
public:
    static constexpr std::u16string_view kCoclass = u"PolicyNames";
    static constexpr std::u16string_view kCreation = u"CPolicyNames::FinalConstruct()";
    static const InterfaceDescription& Description() noexcept { return PolicyNamesInterface(); }

    explicit CPolicyNames(std::shared_ptr<const NameList> names) noexcept : m_names(std::move(names)) {}
    CPolicyNames(const CPolicyNames&) = delete;
    CPolicyNames& operator=(const CPolicyNames&) = delete;

    HRESULT FinalConstruct() noexcept { return S_OK; }

    HRESULT get_Item(LONG lIndex, BSTR* pVal) noexcept override;
    HRESULT get_Count(LONG* pVal) noexcept override;
    HRESULT get__NewEnum(IUnknown** pVal) noexcept override;

    /// Hands out a new object with these names. The creation codes; throws std::bad_alloc. The slot is untouched on
    /// failure.
    [[nodiscard]] static result::Code HandOut(NameList names, IPolicyNames** slot);

protected:
    ~CPolicyNames() = default;

private:
    const std::shared_ptr<const NameList> m_names;  ///< never null
};

/// Hands out the names that `fill(NameList&)` gives. BadArgument for a null slot, before anything happens; the code of
/// `fill`; the codes of HandOut. Throws std::bad_alloc. The slot is untouched on failure.
template <class Fill>
[[nodiscard]] result::Code HandOutNames(IPolicyNames** slot, Fill fill)
{
    if (slot == nullptr) {
        return result::BadArgument;
    }
    NameList names;
    const result::Code code = fill(names);
    return code < 0 ? code : CPolicyNames::HandOut(std::move(names), slot);
}

}  // namespace zupm

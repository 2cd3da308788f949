/// The enumerator over a list of names.
#pragma once

#include <cstddef>
#include <memory>
#include <string_view>
#include <utility>

#include "platform/CriticalSection.h"
#include "settings/NameList.h"
#include "zuPolicyManager/ComBase.h"

namespace zupm {

/// Goes over a list of names; each value is a string.
///
/// Lifetime  Counted; shares the list.
/// Threads   Any; one lock around the place. Threads that share an enumerator share its place.
/// Errors    Those of the operating system's interface: E_POINTER, E_INVALIDARG, E_OUTOFMEMORY. It leaves no error
///           information.
class CNameEnumerator : public IEnumVARIANT {
public:
    static constexpr std::u16string_view kCreation = u"CNameEnumerator::FinalConstruct()";

    /// Begins at a place, at most the end.
    CNameEnumerator(std::shared_ptr<const NameList> names, std::size_t place) noexcept
        : m_names(std::move(names)), m_place(place)
    {
    }
    CNameEnumerator(const CNameEnumerator&) = delete;
    CNameEnumerator& operator=(const CNameEnumerator&) = delete;

    HRESULT FinalConstruct() noexcept { return S_OK; }
    HRESULT QueryOwnInterface(REFIID iid, void** out) noexcept;

    HRESULT Next(ULONG count, VARIANT* values, ULONG* fetched) noexcept override;
    HRESULT Skip(ULONG count) noexcept override;
    HRESULT Reset() noexcept override;
    HRESULT Clone(IEnumVARIANT** copy) noexcept override;

protected:
    ~CNameEnumerator() = default;

private:
    /// The number of names that a step of `count` names passes.
    [[nodiscard]] std::size_t StepOf(ULONG count) const noexcept ZUPM_REQUIRES(m_lock);

    CCriticalSection m_lock;
    const std::shared_ptr<const NameList> m_names;  ///< never null
    std::size_t m_place ZUPM_GUARDED_BY(m_lock);
};

}  // namespace zupm

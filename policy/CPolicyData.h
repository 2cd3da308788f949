/// The model of one product's policy.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/CriticalSection.h"
#include "settings/CPrivateCopy.h"
#include "xml/Node.h"
#include "zuPolicyManager/Results.h"

namespace zupm {

/// One product's policy: a private copy of its element, and its software ID.
///
/// Lifetime   Never points into the policy file; valid after the file is closed.
/// Threads    A lock of its own around every operation, taken inside the owning object's lock. That object writes
///            settings without its own lock, and they go into the document that everything else uses.
/// Errors     Result codes. Initialize (element form) turns any exception into Unexpected; the other operations pass
///            exceptions of memory out.
/// Invariants While initialised, the private "Policy" element has exactly one child, the product.
class CPolicyData {
public:
    /// `ownerLink` is passed to every cursor and never looked at. Throws std::bad_alloc.
    explicit CPolicyData(const void* ownerLink);
    virtual ~CPolicyData() = default;
    CPolicyData(const CPolicyData&) = delete;
    CPolicyData& operator=(const CPolicyData&) = delete;

    /// Copies the first child of `policy` whose "SoftwareID" is that text, whatever its name. PolicyNotFound,
    /// AllocationFailed, Unexpected; the object is not initialised then, but has the software ID.
    [[nodiscard]] result::Code Initialize(const AdvXMLParser::Element& policy, std::u16string_view softwareId) noexcept;

    /// Copies the first "Product" with a "SoftwareID" of a text such as GetXmlText gives. ElementMissing and
    /// SyntaxError (with "text:line:column: reason" in `detail`) leave the object as it was; else as the element form.
    [[nodiscard]] result::Code Initialize(std::u16string_view xml, std::u16string& detail);

    /// Drops the product; the software ID stays. Always Success.
    result::Code Deinitialize();

    /// Appends a copy of the product to a "Policy" element of another document and stamps that with a path and the
    /// current time, whose number goes to `version`. NotInitialised; ElementMissing when `target` is no "Policy".
    [[nodiscard]] result::Code WriteBack(AdvXMLParser::Element target, std::uint64_t& version) const;

    /// Stores the ID, also in the product's element when that is a "Product". NotInitialised; Unexpected, logged, with
    /// nothing changed, when XML cannot hold it.
    [[nodiscard]] result::Code SetSoftwareId(std::u16string_view softwareId);
    [[nodiscard]] std::u16string GetSoftwareId() const;

    /// The whole private document as text. Always Success.
    [[nodiscard]] result::Code GetXmlText(std::u16string& text) const;

    /// The cursor's operations and codes; NotInitialised.
    [[nodiscard]] result::Code GetSectionSetting(std::u16string_view section, std::u16string_view name,
                                                 std::u16string& value);
    [[nodiscard]] result::Code PutSectionSetting(std::u16string_view section, std::u16string_view name,
                                                 std::u16string_view value);
    [[nodiscard]] result::Code RemoveSetting(std::u16string_view section, std::u16string_view name);

    /// Deletes the first section of that name. NotInitialised, SectionNotFound; AllocationFailed or the cursor's code
    /// when the section is gone but the cursor could not be opened again.
    [[nodiscard]] result::Code RemoveSection(std::u16string_view name);

private:
    mutable CCriticalSection m_lock;
    CPrivateCopy m_copy ZUPM_GUARDED_BY(m_lock);
    std::u16string m_softwareId ZUPM_GUARDED_BY(m_lock);
};

}  // namespace zupm

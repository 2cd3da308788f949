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
    /// `ownerLink` goes to every cursor; nobody reads it. Throws std::bad_alloc.
    explicit CPolicyData(const void* ownerLink);
    virtual ~CPolicyData() = default;
    CPolicyData(const CPolicyData&) = delete;
    CPolicyData& operator=(const CPolicyData&) = delete;

    /// Copies the first child of `policy` whose "SoftwareID" is that text, whatever the child's name. PolicyNotFound,
    /// AllocationFailed, Unexpected: these leave the object not initialised, but with the software ID. `known` is that
    /// child when the caller knows it; null has it searched.
    [[nodiscard]] result::Code Initialize(const AdvXMLParser::Element& policy, std::u16string_view softwareId,
                                          const AdvXMLParser::Element& known = {}) noexcept;

    /// Copies the first "Product" with a "SoftwareID" out of a text such as GetXmlText gives. ElementMissing, and
    /// SyntaxError (with "text:line:column: reason" in `detail`), leave the object as it was. Otherwise the codes of
    /// the element form.
    [[nodiscard]] result::Code Initialize(std::u16string_view xml, std::u16string& detail);

    /// Drops the product; the software ID stays. Always Success.
    result::Code Deinitialize();

    /// Appends a copy of the product to a "Policy" element of another document, and stamps that element with a path and
    /// the current time. `version` gets the time as a number. NotInitialised; ElementMissing when `target` is no
    /// "Policy".
    [[nodiscard]] result::Code WriteBack(AdvXMLParser::Element target, std::uint64_t& version) const;

    /// Stores the ID, and writes it into the product's element when that is a "Product". NotInitialised. When XML
    /// cannot hold the ID: Unexpected and a log line, with nothing changed.
    [[nodiscard]] result::Code SetSoftwareId(std::u16string_view softwareId);
    [[nodiscard]] std::u16string GetSoftwareId() const;
    /// The version of the policy that the product was copied from; empty when it had none, and before the first copy.
    [[nodiscard]] std::u16string GetTakenVersion() const;

    /// The whole private document as text. Always Success.
    [[nodiscard]] result::Code GetXmlText(std::u16string& text) const;

    /// The cursor's operations and codes; NotInitialised.
    [[nodiscard]] result::Code GetSectionSetting(std::u16string_view section, std::u16string_view name,
                                                 std::u16string& value);
    [[nodiscard]] result::Code GetStoredSetting(std::u16string_view section, std::u16string_view name,
                                                std::u16string& value);
    [[nodiscard]] result::Code GetSectionNames(NameList& names);
    [[nodiscard]] result::Code GetSettingNames(std::u16string_view section, NameList& names);
    [[nodiscard]] result::Code PutSectionSetting(std::u16string_view section, std::u16string_view name,
                                                 std::u16string_view value);
    [[nodiscard]] result::Code RemoveSetting(std::u16string_view section, std::u16string_view name);

    /// Deletes the first section of that name and reopens the cursor. NotInitialised, SectionNotFound. AllocationFailed
    /// and the cursor's codes: the section is gone, but the cursor could not be reopened.
    [[nodiscard]] result::Code RemoveSection(std::u16string_view name);

private:
    mutable CCriticalSection m_lock;
    CPrivateCopy m_copy ZUPM_GUARDED_BY(m_lock);
    std::u16string m_softwareId ZUPM_GUARDED_BY(m_lock);
    std::u16string m_takenVersion ZUPM_GUARDED_BY(m_lock);
};

}  // namespace zupm

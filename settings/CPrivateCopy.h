/// The private copy of one product or task.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "settings/CElementRef.h"
#include "settings/CSectionParser.h"
#include "xml/Document.h"
#include "zuPolicyManager/Results.h"

namespace zupm {

/// A private document that holds a copy of one element (a product or a task) inside a wrapper (its "Policy" or
/// "TaskGroup"), and the cursor over the copy.
///
/// Lifetime   Owns the document and the cursor; never points into the document that the copy was taken from.
/// Threads    None of its own; CPolicyData holds its lock around every call, CTaskData relies on its owner's.
/// Errors     Result codes; exceptions of memory pass out.
/// Invariants The wrapper has at most one child, the copy. A cursor always reads that child.
class CPrivateCopy {
public:
    /// Makes a document with a root and a wrapper of those names. `ownerLink` goes to every cursor; nobody reads it.
    /// Throws std::bad_alloc.
    CPrivateCopy(std::u16string_view root, std::u16string_view wrapper, const void* ownerLink);

    [[nodiscard]] bool IsInitialised() const noexcept { return m_initialised; }
    [[nodiscard]] AdvXMLParser::Element Wrapper() const noexcept { return m_wrapper.GetElement(); }
    /// The copy; null without one.
    [[nodiscard]] AdvXMLParser::Element Content() const noexcept;
    /// The whole document as text.
    [[nodiscard]] std::u16string Text() const { return m_document.GenerateXML(false).Wide(); }
    /// The cursor, or null. A failed initialisation may leave one.
    [[nodiscard]] CSectionParser* Cursor() const noexcept { return m_cursor.get(); }

    /// Copies `source` in place of the old copy and opens a cursor over the new one. A null element gives Success, with
    /// neither a copy nor a cursor. AllocationFailed, the cursor's codes. This object is initialised after that if the
    /// code is not negative. The caller drops the copy of an initialised object first.
    [[nodiscard]] result::Code Take(const AdvXMLParser::Element& source);

    /// Forgets the copy and its cursor.
    void Drop();

    /// Puts a new cursor in place of the old one. AllocationFailed leaves none; the cursor's codes.
    [[nodiscard]] result::Code ReopenCursor();
    /// Puts a cursor that reads the copy in place of the old one.
    void AdoptCursor(std::unique_ptr<CSectionParser> cursor) noexcept { m_cursor = std::move(cursor); }
    /// A new cursor over an element of any document, not initialised; null when memory ran out.
    [[nodiscard]] std::unique_ptr<CSectionParser> CreateCursor(const AdvXMLParser::Element& container) const noexcept;

    /// The cursor's operations and codes; NotInitialised.
    [[nodiscard]] result::Code GetSectionSetting(std::u16string_view section, std::u16string_view name,
                                                 std::u16string& value);
    [[nodiscard]] result::Code GetStoredSetting(std::u16string_view section, std::u16string_view name,
                                                std::u16string& value) const noexcept;
    [[nodiscard]] result::Code GetSectionNames(NameList& names) const noexcept;
    [[nodiscard]] result::Code GetSettingNames(std::u16string_view section, NameList& names) const noexcept;
    [[nodiscard]] result::Code PutSectionSetting(std::u16string_view section, std::u16string_view name,
                                                 std::u16string_view value);
    [[nodiscard]] result::Code RemoveSetting(std::u16string_view section, std::u16string_view name);

private:
    [[nodiscard]] result::Code OpenCursor();
    [[nodiscard]] result::Code CheckCursor() const noexcept;

    AdvXMLParser::Document m_document;
    CElementRef m_wrapper;
    std::unique_ptr<CSectionParser> m_cursor;  ///< declared after the document that it reads: it is destroyed first
    bool m_initialised = false;
    // Given: see docs/given-oddities.md, "owner link".
    const void* m_ownerLink;
};

}  // namespace zupm

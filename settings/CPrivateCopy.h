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
/// Invariants The wrapper has at most one child, the copy. Whatever cursor there is reads that child.
class CPrivateCopy {
public:
    /// An empty document with a root and a wrapper of those names. `ownerLink` is passed to every cursor and never
    /// looked at. Throws std::bad_alloc.
    CPrivateCopy(std::u16string_view root, std::u16string_view wrapper, const void* ownerLink);

    [[nodiscard]] bool IsInitialised() const noexcept { return m_initialised; }
    [[nodiscard]] AdvXMLParser::Element Wrapper() const noexcept { return m_wrapper.GetElement(); }
    /// The copy; null when there is none.
    [[nodiscard]] AdvXMLParser::Element Content() const noexcept;
    /// The whole document as text.
    [[nodiscard]] std::u16string Text() const { return m_document.GenerateXML(false).Wide(); }
    /// Null when there is none. An initialisation that failed may leave one.
    [[nodiscard]] CSectionParser* Cursor() const noexcept { return m_cursor.get(); }

    /// Replaces the copy by one of `source` and opens a cursor over it; of a null element there is neither a copy nor a
    /// cursor, with Success. A code that is not negative makes this object initialised. AllocationFailed, the cursor's
    /// codes. The caller has dropped the copy before.
    [[nodiscard]] result::Code Take(const AdvXMLParser::Element& source);

    /// Forgets the copy and its cursor.
    void Drop();

    /// Puts a new cursor in place of the old one. AllocationFailed, without any cursor; the cursor's codes.
    [[nodiscard]] result::Code ReopenCursor();
    /// Puts this cursor, which reads the copy, in place of the old one.
    void AdoptCursor(std::unique_ptr<CSectionParser> cursor) noexcept { m_cursor = std::move(cursor); }
    /// A new cursor over an element of any document, not initialised; null when memory ran out.
    [[nodiscard]] std::unique_ptr<CSectionParser> CreateCursor(const AdvXMLParser::Element& container) const noexcept;

    /// The cursor's operations and codes; NotInitialised.
    [[nodiscard]] result::Code GetSectionSetting(std::u16string_view section, std::u16string_view name,
                                                 std::u16string& value);
    [[nodiscard]] result::Code PutSectionSetting(std::u16string_view section, std::u16string_view name,
                                                 std::u16string_view value);
    [[nodiscard]] result::Code RemoveSetting(std::u16string_view section, std::u16string_view name);

private:
    [[nodiscard]] result::Code OpenCursor();
    [[nodiscard]] result::Code CheckCursor() const noexcept;

    AdvXMLParser::Document m_document;
    CElementRef m_wrapper;
    std::unique_ptr<CSectionParser> m_cursor;  ///< after the document that it reads, so that it goes first
    bool m_initialised = false;
    // Given: see docs/given-oddities.md, "owner link".
    const void* m_ownerLink;
};

}  // namespace zupm

#include "settings/CPrivateCopy.h"

#include <utility>

#include "settings/Schema.h"

namespace zupm {

using AdvXMLParser::Element;

CPrivateCopy::CPrivateCopy(std::u16string_view root, std::u16string_view wrapper, const void* ownerLink)
    : m_document(root), m_wrapper(m_document.GetRoot().AddElementInto(wrapper)), m_ownerLink(ownerLink)
{
}

Element CPrivateCopy::Content() const noexcept
{
    return FirstChild(Wrapper());
}

result::Code CPrivateCopy::Take(const Element& source)
{
    m_cursor.reset();
    Element wrapper = Wrapper();
    wrapper.DeleteChildren();  // a failed initialisation may have left a copy
    wrapper.Add(source.Clone());
    const result::Code code = Content().IsNull() ? result::Success : OpenCursor();
    m_initialised = code >= 0;
    return code;
}

void CPrivateCopy::Drop()
{
    m_cursor.reset();
    m_initialised = false;
    Wrapper().DeleteChildren();
}

result::Code CPrivateCopy::ReopenCursor()
{
    m_cursor.reset();
    return OpenCursor();
}

result::Code CPrivateCopy::OpenCursor()
{
    std::unique_ptr<CSectionParser> cursor = CreateCursor(Content());
    if (!cursor) {
        return result::AllocationFailed;
    }
    m_cursor = std::move(cursor);
    return m_cursor->Initialize();
}

std::unique_ptr<CSectionParser> CPrivateCopy::CreateCursor(const Element& container) const noexcept
{
    return CSectionParser::Create(container, m_ownerLink);
}

result::Code CPrivateCopy::GetSectionSetting(std::u16string_view section, std::u16string_view name,
                                             std::u16string& value)
{
    const result::Code code = CheckCursor();
    return code < 0 ? code : m_cursor->GetSettingValue(section, name, value);
}

result::Code CPrivateCopy::GetStoredSetting(std::u16string_view section, std::u16string_view name,
                                            std::u16string& value) const noexcept
{
    const result::Code code = CheckCursor();
    return code < 0 ? code : m_cursor->GetStoredValue(section, name, value);
}

result::Code CPrivateCopy::GetSectionNames(NameList& names) const noexcept
{
    const result::Code code = CheckCursor();
    return code < 0 ? code : m_cursor->GetSectionNames(names);
}

result::Code CPrivateCopy::GetSettingNames(std::u16string_view section, NameList& names) const noexcept
{
    const result::Code code = CheckCursor();
    return code < 0 ? code : m_cursor->GetSettingNames(section, names);
}

result::Code CPrivateCopy::PutSectionSetting(std::u16string_view section, std::u16string_view name,
                                             std::u16string_view value)
{
    const result::Code code = CheckCursor();
    return code < 0 ? code : m_cursor->SetSettingValue(section, name, value);
}

result::Code CPrivateCopy::RemoveSetting(std::u16string_view section, std::u16string_view name)
{
    const result::Code code = CheckCursor();
    return code < 0 ? code : m_cursor->RemoveSetting(section, name);
}

result::Code CPrivateCopy::CheckCursor() const noexcept
{
    if (!m_initialised) {
        return result::NotInitialised;
    }
    // A null element has no cursor, and memory may have run out while the cursor was reopened.
    return m_cursor ? result::Success : result::CursorNotInitialised;
}

}  // namespace zupm

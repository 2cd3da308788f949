#include "settings/StoredSetting.h"

#include <cstddef>
#include <cstdint>
#include <optional>

#include "text/Utf.h"
#include "xml/Escape.h"
#include "xml/MarkupReader.h"
#include "xml/TagScanner.h"

namespace zupm {

using AdvXMLParser::Tag;
using AdvXMLParser::TagKind;

namespace {

/// Whether a start tag has that "name". No tag has a name that is not valid Unicode.
bool HasName(std::string_view tag, const std::optional<std::string>& name)
{
    AdvXMLParser::TagScanner scanner(tag);
    while (const std::optional<AdvXMLParser::AttributeSpan> attribute = scanner.Next()) {
        if (attribute->name == "name") {
            const bool isPlain = attribute->value.find_first_of("&\t\n\r") == std::string_view::npos;
            return isPlain ? attribute->value == name : AdvXMLParser::DecodeAttribute(attribute->value) == name;
        }
    }
    return false;
}

/// Reads the text of a product or task up to the end of the setting. For one search.
class SettingFinder {
public:
    SettingFinder(std::string_view text, std::u16string_view section, std::u16string_view name)
        : m_text(text), m_section(ToUtf8(section)), m_name(ToUtf8(name))
    {
    }

    result::Code Find(std::string& value)
    {
        AdvXMLParser::MarkupReader reader(m_text);
        std::size_t end = 0;
        while (const std::optional<Tag> tag = reader.Next()) {
            if (m_isInSetting && m_depth == kSetting) {
                AdvXMLParser::AppendDecodedText(m_text.substr(end, tag->begin - end), value);
            }
            end = tag->end;
            if (tag->kind != TagKind::End) {
                Open(m_text.substr(tag->begin, tag->end - tag->begin));
            }
            if (tag->kind != TagKind::Start && Close()) {
                return result::Success;
            }
        }
        return m_hasSection ? result::SettingNotFound : result::SectionNotFound;
    }

private:
    static constexpr std::uint32_t kSection = 2;
    static constexpr std::uint32_t kSetting = 3;

    void Open(std::string_view tag)
    {
        ++m_depth;
        if (m_depth == kSection) {
            m_isInSection = HasName(tag, m_section);
            m_hasSection = m_hasSection || m_isInSection;
        } else if (m_depth == kSetting) {
            m_isInSetting = m_isInSection && HasName(tag, m_name);
        }
    }

    /// Whether this is the end of the setting.
    bool Close()
    {
        --m_depth;
        return m_isInSetting && m_depth < kSetting;
    }

    std::string_view m_text;
    std::optional<std::string> m_section;
    std::optional<std::string> m_name;
    std::uint32_t m_depth = 0;
    bool m_hasSection = false;
    bool m_isInSection = false;
    bool m_isInSetting = false;
};

}  // namespace

result::Code ReadStoredSetting(const AdvXMLParser::Element& entry, std::u16string_view section,
                               std::u16string_view name, std::u16string& value)
{
    const std::string text = entry.GetXml();
    std::string found;
    const result::Code code = SettingFinder(text, section, name).Find(found);
    if (code >= 0) {
        value = ToUtf16(found).value_or(std::u16string());
    }
    return code;
}

}  // namespace zupm

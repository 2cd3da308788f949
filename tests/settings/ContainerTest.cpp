#include "tests/settings/ContainerTest.h"

#include "text/Utf.h"
#include "xml/Parser.h"

namespace zupm::test {

namespace {

std::string Shown(result::Code code, std::u16string_view value)
{
    return code < 0 ? "code " + std::to_string(code) : ToUtf8Lossy(value);
}

}  // namespace

void ContainerTest::Load(std::string_view xml)
{
    m_cursor.reset();
    m_store.reset();
    m_document = AdvXMLParser::Parser().Parse(AdvXMLParser::XmlText(std::string(xml)));
}

std::string ContainerTest::Text() const
{
    return m_document->GenerateXML(false).Utf8();
}

void ContainerTest::OpenStore()
{
    m_store = std::make_unique<CXMLDataObject>(Root(), nullptr);
    ASSERT_EQ(m_store->Initialize(), result::Success);
    static_cast<void>(m_log.Take());
}

std::string ContainerTest::Value(std::u16string_view section, std::u16string_view setting) const
{
    std::u16string value = u"untouched";
    const result::Code code = m_store->GetSettingValue(section, setting, value);
    if (code < 0) {
        EXPECT_EQ(value, u"untouched");
    }
    return Shown(code, value);
}

void ContainerTest::MakeCursor()
{
    m_cursor = CSectionParser::Create(Root(), nullptr);
}

std::string ContainerTest::CursorValue(std::u16string_view section, std::u16string_view setting)
{
    std::u16string value = u"untouched";
    const result::Code code = m_cursor->GetSettingValue(section, setting, value);
    if (code < 0) {
        EXPECT_EQ(value, u"untouched");
    }
    return Shown(code, value);
}

}  // namespace zupm::test

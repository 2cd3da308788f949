/// A settings container for tests of the store and the cursor.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>

#include "settings/CSectionParser.h"
#include "settings/CXMLDataObject.h"
#include "tests/support/LogCapture.h"
#include "xml/Document.h"

namespace zupm::test {

/// A document whose root is the container; the log is captured throughout.
class ContainerTest : public testing::Test {
protected:
    /// Replaces the document by another one.
    void Load(std::string_view xml);
    [[nodiscard]] AdvXMLParser::Element Root() const { return m_document->GetRoot(); }
    /// The document's text.
    [[nodiscard]] std::string Text() const;

    /// A new store, initialised; the log forgets what that logged.
    void OpenStore();
    [[nodiscard]] CXMLDataObject& Store() { return *m_store; }
    /// The value of a setting, or "code N".
    [[nodiscard]] std::string Value(std::u16string_view section, std::u16string_view setting) const;

    /// A new cursor, not initialised.
    void MakeCursor();
    [[nodiscard]] CSectionParser& Cursor() { return *m_cursor; }
    [[nodiscard]] std::string CursorValue(std::u16string_view section, std::u16string_view setting);

    LogCapture m_log;

private:
    std::unique_ptr<AdvXMLParser::Document> m_document;
    std::unique_ptr<CXMLDataObject> m_store;
    std::unique_ptr<CSectionParser> m_cursor;
};

}  // namespace zupm::test

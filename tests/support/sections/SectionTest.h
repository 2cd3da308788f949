/// The fixture of the tests that products and tasks share. Each program that lists these test sources instantiates
/// SectionTest once for its class, in every form of calling.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "tests/support/FixedClock.h"
#include "tests/support/LogCapture.h"
#include "tests/support/Names.h"
#include "tests/support/TempFolder.h"
#include "tests/support/sections/SectionMembers.h"

namespace zupm::test {

/// What a read gave; `text` is "(untouched)" when the slot was left alone.
struct Read {
    HRESULT code;
    std::u16string text;

    friend bool operator==(const Read&, const Read&) = default;
};
void PrintTo(const Read& read, std::ostream* out);

/// A read that failed and left the slot alone.
[[nodiscard]] inline Read Failed(HRESULT code)
{
    return {code, u"(untouched)"};
}

struct SectionCase {
    const char* label;
    ObjectKind kind;
    CallForm form;
};
void PrintTo(const SectionCase& row, std::ostream* out);

/// One object under test, `m_object`: a new one at first. The clock is stopped, so that two texts of a task differ by
/// what a test did.
class SectionTest : public testing::TestWithParam<SectionCase> {
protected:
    SectionTest();

    /// Goes on with the object that a policy file hands out whose "Product" or "Task" element holds `inner`.
    void Load(std::string_view inner);
    /// Hands the object to a new policy file and goes on with the object that this file hands out.
    void PassThroughFile();

    [[nodiscard]] Read Get(const Bstr& section, const Bstr& name);
    [[nodiscard]] Read GetCurrent(const Bstr& name);
    [[nodiscard]] Read GetStored(const Bstr& section, const Bstr& name);
    [[nodiscard]] Read TakenVersion();
    [[nodiscard]] Listed SectionNames();
    [[nodiscard]] Listed SettingNames(const Bstr& section);
    /// The object's XML text, as UTF-8.
    [[nodiscard]] std::string Data();
    /// Everything that is written between an element's start and end tag, or "(none)".
    [[nodiscard]] std::string Inner(std::string_view startTag, std::string_view endTag);

    FixedClock m_clock;
    LogCapture m_log;
    TempFolder m_folder;
    std::unique_ptr<SectionMembers> m_object;

private:
    void Use(ComPtr<IDispatch> object);

    ComPtr<IDispatch> m_dispatch;
};

[[nodiscard]] std::vector<SectionCase> AllForms(ObjectKind kind);
[[nodiscard]] std::string SectionCaseName(const testing::TestParamInfo<SectionCase>& info);

}  // namespace zupm::test

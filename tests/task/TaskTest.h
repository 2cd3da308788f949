/// What the tests of tasks share.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "tests/support/Difference.h"
#include "tests/support/ErrorInfo.h"
#include "tests/support/FixedClock.h"
#include "tests/support/ForeignObjects.h"
#include "tests/support/LogCapture.h"
#include "tests/support/MemberCall.h"
#include "tests/support/PolicyFileClient.h"
#include "tests/support/TempFolder.h"
#include "zuPolicyManager/zuPolicyManager.h"

namespace zupm::test {

/// A policy file object with a file of its own, the clock standing still, the log caught.
class TaskTest : public testing::Test {
protected:
    /// Loads a file whose one "TaskRoot" holds `groups`.
    void LoadGroups(std::string_view groups)
    {
        const std::string text = "<File>\n<TaskRoot>\n" + std::string(groups) + "</TaskRoot>\n</File>\n";
        ASSERT_EQ(m_file.Load(m_folder.Write(u"policy.xml", text)), 0);
        m_before = Utf8(m_file.Buffer().value());
    }
    /// The lines by which the file's document differs from what was loaded.
    [[nodiscard]] std::string Changes() const { return Difference(m_before, Utf8(m_file.Buffer().value())); }

    FixedClock m_clock;
    LogCapture m_log;
    TempFolder m_folder;
    PolicyFileClient m_file;
    std::string m_before;
};

[[nodiscard]] inline TextResult Ok(std::u16string_view text)
{
    return {0, std::u16string(text)};
}

/// One text property of tasks.
struct TextProperty {
    const char16_t* name;
    HRESULT (IPolicyTask::*get)(BSTR*);
    HRESULT (IPolicyTask::*put)(BSTR);
};

inline constexpr TextProperty kTextProperties[] = {
    {u"CreatorID", &IPolicyTask::get_CreatorID, &IPolicyTask::put_CreatorID},
    {u"SoftwareID", &IPolicyTask::get_SoftwareID, &IPolicyTask::put_SoftwareID},
    {u"TaskID", &IPolicyTask::get_TaskID, &IPolicyTask::put_TaskID},
    {u"DisplayName", &IPolicyTask::get_DisplayName, &IPolicyTask::put_DisplayName},
    {u"TaskType", &IPolicyTask::get_TaskType, &IPolicyTask::put_TaskType},
    {u"PlatformsSupported", &IPolicyTask::get_PlatformsSupported, &IPolicyTask::put_PlatformsSupported},
};

}  // namespace zupm::test

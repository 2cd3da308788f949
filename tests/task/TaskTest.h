/// What the tests of tasks share.
#pragma once

#include "tests/support/EntryTest.h"
#include "tests/support/ForeignObjects.h"

namespace zupm::test {

class TaskTest : public EntryTest {
protected:
    /// Loads a file whose one "TaskRoot" holds `groups`.
    void LoadGroups(std::string_view groups)
    {
        Load("<File>\n<TaskRoot>\n" + std::string(groups) + "</TaskRoot>\n</File>\n");
    }
};

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

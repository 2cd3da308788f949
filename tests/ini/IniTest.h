/// What the tests of INI files share: a task that is dumped into a file.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "tests/ini/IniTexts.h"
#include "tests/support/IniReader.h"
#include "tests/support/LogCapture.h"
#include "tests/support/PolicyFileClient.h"
#include "tests/support/TempFolder.h"
#include "zuPolicyManager/zuPolicyManager.h"

namespace zupm::test {

class IniTest : public testing::Test {
protected:
    /// What the file holds before, in sections that the task does not write; in the form in which every writer leaves
    /// it.
    static constexpr std::string_view kOld = "; mine\r\n[Before]\r\nkept=1\r\n[After]\r\nkept=2\r\n";

    /// Writes a task with these settings of section, key and value into a file with the old content.
    HRESULT DumpOver(std::string_view old, const std::vector<std::vector<std::u16string>>& settings)
    {
        m_folder.Write(u"task.ini", old);
        TaskClient task(Create<IPolicyTask>());
        for (const std::vector<std::u16string>& setting : settings) {
            EXPECT_EQ(task.Put(setting[0], setting[1], setting[2]), 0);
        }
        return Dump(task);
    }
    HRESULT Dump(const TaskClient& task)
    {
        static_cast<void>(m_log.Take());
        return task.Object()->WriteTaskDataToIniFile(m_path.Get());
    }

    [[nodiscard]] std::string Bytes() const { return m_folder.Read(u"task.ini"); }
    [[nodiscard]] IniReader Reader() const { return IniReader(DecodeIni(Bytes())); }

    LogCapture m_log;
    TempFolder m_folder;
    Bstr m_path{m_folder.Path(u"task.ini")};
};

}  // namespace zupm::test

/// A file in a folder of its own, to be held for an edit.
#pragma once

#include <windows.h>

#include <gtest/gtest.h>

#include "platform/HeldFile.h"
#include "platform/win32/Handle.h"
#include "tests/support/TempFolder.h"

namespace zupm::test {

using win32::Handle;
using win32::kShareAll;
using win32::OwnFile;

class HeldFileTest : public testing::Test {
protected:
    HeldFileTest() { m_folder.Write(u"file", m_old); }

    [[nodiscard]] std::u16string Path(std::u16string_view name = u"file") const { return m_folder.Path(name); }

    [[nodiscard]] std::wstring Wide(std::u16string_view name = u"file") const
    {
        return std::filesystem::path(Path(name)).wstring();
    }

    [[nodiscard]] Handle Hold(DWORD access, DWORD share, std::u16string_view name = u"file") const
    {
        return OwnFile(CreateFileW(Wide(name).c_str(), access, share, nullptr, OPEN_EXISTING, 0, nullptr));
    }

    /// The file, open, locked and read.
    [[nodiscard]] HeldFile Edit() const
    {
        HeldFile file;
        std::string bytes;
        EXPECT_EQ(file.Open(Path()), result::Success);
        EXPECT_EQ(file.TryLock(), result::Success);
        EXPECT_EQ(file.Read(bytes), result::Success);
        EXPECT_EQ(bytes, m_old);
        return file;
    }

    /// What a second editor is answered.
    [[nodiscard]] result::Code LockAnother() const
    {
        HeldFile file;
        const result::Code code = file.Open(Path());
        return code < 0 ? code : file.TryLock();
    }

    void ExpectAlone(std::string_view bytes) const
    {
        EXPECT_EQ(m_folder.Read(u"file"), bytes);
        EXPECT_EQ(m_folder.Names(), std::vector<std::string>{"file"});
    }

    const std::string m_old = "old";
    TempFolder m_folder;
};

}  // namespace zupm::test

// What a public operation says about a file that another process keeps to itself, or that is nowhere. (A full disk
// is not tested: that takes a disk.)
#include <windows.h>

#include <gtest/gtest.h>

#include "platform/win32/Handle.h"
#include "tests/faults/World.h"

namespace zupm::test {

namespace {

class HeldFile : public testing::Test {
protected:
    [[nodiscard]] static win32::Handle Hold(const Bstr& path)
    {
        const std::filesystem::path native(path.Text());
        return win32::OwnFile(CreateFileW(native.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    }

    TempFolder m_folder;
    World m_world{m_folder};
};

}  // namespace

TEST_F(HeldFile, CannotBeLoadedAndCanBeLaterOn)
{
    win32::Handle holder = Hold(m_world.path);
    ASSERT_TRUE(holder != nullptr);
    EXPECT_EQ(m_world.file.Load(m_world.path.Text()), result::SharingViolation);
    EXPECT_EQ(m_world.file.FindPolicy(kProduct), result::NotInitialised);
    holder.reset();
    EXPECT_EQ(m_world.file.Load(m_world.path.Text()), 0);
    EXPECT_EQ(m_world.file.FindPolicy(kProduct), 0);
}

TEST_F(HeldFile, CannotBeWrittenAndTheDocumentAndTheFileStay)
{
    const std::string old = m_folder.Read(kFileName);
    win32::Handle holder = Hold(m_world.path);
    ASSERT_TRUE(holder != nullptr);
    EXPECT_EQ(m_world.file.Write(m_world.path.Text()), result::SharingViolation);
    EXPECT_EQ(m_world.file.FindPolicy(kProduct), 0);
    EXPECT_EQ(m_world.file.FindTask(kProduct, kTask), 0);
    EXPECT_EQ(m_folder.Names(), std::vector<std::string>{"policy.xml"});
    holder.reset();
    EXPECT_EQ(m_folder.Read(kFileName), old);
    EXPECT_EQ(m_world.file.Write(m_world.path.Text()), 0);
    EXPECT_EQ(m_folder.Read(kFileName), Utf8(*m_world.file.Buffer()));
}

TEST_F(HeldFile, AsAnIniFile_EndsTheDumpAndStays)
{
    m_folder.Write(kIniName, "[Other]\r\nx=1\r\n");
    win32::Handle holder = Hold(m_world.iniPath);
    ASSERT_TRUE(holder != nullptr);
    EXPECT_EQ(m_world.task.Object()->WriteTaskDataToIniFile(m_world.iniPath.Get()), result::GeneralFailure);
    holder.reset();
    EXPECT_EQ(m_folder.Read(kIniName), "[Other]\r\nx=1\r\n");
    EXPECT_EQ(m_folder.Names(), (std::vector<std::string>{"policy.xml", "task.ini"}));
}

TEST_F(HeldFile, InAFolderThatIsNotThere_IsNotWritten)
{
    EXPECT_EQ(m_world.file.Write(m_folder.Path(u"missing") + u"\\policy.xml"), result::PathNotFound);
    EXPECT_EQ(m_world.file.FindPolicy(kProduct), 0);
    EXPECT_EQ(m_folder.Names(), std::vector<std::string>{"policy.xml"});
}

}  // namespace zupm::test

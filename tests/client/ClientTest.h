/// A policy file on disk, and the client header over it.
#pragma once

#include <gtest/gtest.h>
#include <zuPolicyManager/Client.h>

#include <string>
#include <string_view>
#include <vector>

#include "tests/support/Bstr.h"
#include "tests/support/TempFolder.h"

namespace zupm::test {

using Texts = std::vector<std::string>;

inline constexpr char kSample[] = R"(<?xml version="1.0" encoding="UTF-8"?>
<F>
  <PolicyRoot version="20250101000000" AssignmentList="all">
    <PolicyGroup Path="0">
      <Policy PathID="0" PolicyVersion="20250102000000">
        <Product SoftwareID="Scanner">
          <Section name="General">
            <Setting name="Enabled">1</Setting>
            <Setting name="Mode">full</Setting>
            <Setting name="Folder">&lt;Home&gt;/in</Setting>
          </Section>
          <Section name="Empty"/>
        </Product>
        <Product SoftwareID="Updater">
          <Section name="General">
            <Setting name="Interval">12</Setting>
          </Section>
        </Product>
      </Policy>
    </PolicyGroup>
  </PolicyRoot>
  <TaskRoot version="20250103000000">
    <TaskGroup Path="0" TaskID="Daily" DisplayName="Daily scan" TaskType="Scan" SoftwareID="Scanner" CreatorID="Admin" Platforms="x64" TaskPriority="-3" TaskVersion="20250103000000">
      <Task TaskVersion="20250103000000" PathID="0">
        <Section name="Plan">
          <Setting name="Hour">4</Setting>
        </Section>
      </Task>
    </TaskGroup>
    <TaskGroup Path="0" TaskID="Update" SoftwareID="Updater" TaskVersion="20250101000000"><Task/></TaskGroup>
    <TaskGroup Path="0" TaskID="Weekly" SoftwareID="Scanner" TaskVersion="20250101000000"><Task/></TaskGroup>
  </TaskRoot>
</F>
)";

class ClientTest : public testing::Test {
protected:
    ClientTest() { m_folder.Write(u"policy.xml", kSample); }

    /// A path in the folder, as UTF-8.
    [[nodiscard]] std::string PathOf(std::u16string_view name) const { return Utf8(m_folder.Path(name)); }
    [[nodiscard]] std::string Path() const { return PathOf(u"policy.xml"); }
    [[nodiscard]] PolicyFile Open(Access access = Access::ReadWrite) const { return PolicyFile::Open(Path(), access); }
    /// What another program does to the file meanwhile.
    void ChangeOnDisk() const { m_folder.Write(u"policy.xml", std::string(kSample) + "\n"); }

    TempFolder m_folder;
};

/// What `call` throws; fails when it throws nothing or another class.
template <class Exception, class Call>
[[nodiscard]] Exception Thrown(const Call& call)
{
    try {
        call();
    } catch (const Exception& error) {
        return error;
    }
    throw std::runtime_error("nothing was thrown");
}

}  // namespace zupm::test

// The interface tables: identifiers, names and parameters. The members themselves are in tests/module/MemberTests.cpp.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <utility>

#include "com/DispatchThunk.h"
#include "interfaces/InterfaceTables.h"
#include "zuPolicyManager/zuPolicyManager.h"

namespace zupm::test {
namespace {

struct Expectation {
    const InterfaceDescription& described;
    const IID& iid;
    std::u16string_view name;
};

const Expectation kExpectations[] = {
    {TaskInfoInterface(), IID_ITaskInfo, u"ITaskInfo"},
    {PolicyTaskInterface(), IID_IPolicyTask, u"IPolicyTask"},
    {PolicyProductInterface(), IID_IPolicyProduct, u"IPolicyProduct"},
    {PolicyFileInterface(), IID_IPolicyFile, u"IPolicyFile"},
    {PolicyFileEditInterface(), IID_IPolicyFileEdit, u"IPolicyFileEdit"},
    {PolicyFileContentsInterface(), IID_IPolicyFileContents, u"IPolicyFileContents"},
    {PolicySectionsInterface(), IID_IPolicySections, u"IPolicySections"},
    {PolicyNamesInterface(), IID_IPolicyNames, u"IPolicyNames"},
    {PolicyNoticesInterface(), IID_IPolicyNotices, u"IPolicyNotices"},
};

TEST(InterfaceTables, Interfaces_HaveTheirIdentifiersAndNames)
{
    for (const Expectation& row : kExpectations) {
        EXPECT_TRUE(row.described.iid == row.iid);
        EXPECT_EQ(row.described.name, row.name);
    }
}

TEST(InterfaceTables, OnlyOutput_IsTheResultAndTwoOutputsAreNone)
{
    for (const Expectation& row : kExpectations) {
        for (const Member& member : row.described.members) {
            const auto slots = std::ranges::count_if(member.parameters, IsSlot, &Parameter::type);
            const auto results = std::ranges::count_if(member.parameters, &Parameter::isResult);
            EXPECT_EQ(results, slots == 1 ? 1 : 0) << std::string(member.name.begin(), member.name.end());
        }
    }
}

TEST(InterfaceTables, Kinds_FitTheirParameters)
{
    for (const Expectation& row : kExpectations) {
        for (const Member& member : row.described.members) {
            EXPECT_FALSE(member.help.empty());
            if (member.kind == MemberKind::PropertyGet) {
                // The value comes last, after what picks one of several.
                const bool isOfPlaces = row.iid == IID_IPolicyNames || row.iid == IID_IPolicyNotices;
                const bool isOfAll = member.name == u"Count" || member.name == u"_NewEnum";
                ASSERT_EQ(member.parameters.size(), isOfPlaces && !isOfAll ? 2U : 1U);
                EXPECT_TRUE(member.parameters.back().isResult);
                EXPECT_EQ(std::ranges::count_if(member.parameters, IsSlot, &Parameter::type), 1);
            } else if (member.kind == MemberKind::PropertyPut) {
                ASSERT_EQ(member.parameters.size(), 1U);
                EXPECT_FALSE(IsSlot(member.parameters[0].type));
            }
        }
    }
}

TEST(InterfaceTables, Parameters_HaveTheTypesOfTheSignature)
{
    const auto parameters = PolicyFileInterface().members[0].parameters;
    ASSERT_EQ(parameters.size(), 2U);
    EXPECT_EQ(parameters[0].name, u"pTask");
    EXPECT_EQ(parameters[0].type, ParameterType::Object);
    EXPECT_EQ(parameters[1].name, u"bOverwrite");
    EXPECT_EQ(parameters[1].type, ParameterType::Number);
    const Parameter& task = PolicyFileInterface().members[9].parameters[0];
    EXPECT_EQ(task.type, ParameterType::DispatchSlot);
    EXPECT_EQ(task.slotInterface, &IID_IPolicyTask);
    const Parameter& policy = PolicyFileInterface().members[10].parameters[0];
    EXPECT_EQ(policy.type, ParameterType::DispatchSlot);
    EXPECT_EQ(policy.slotInterface, &IID_IPolicyProduct);
    const Parameter& taskInfo = PolicyFileInterface().members[8].parameters[0];
    EXPECT_EQ(taskInfo.type, ParameterType::ObjectSlot);
    EXPECT_EQ(taskInfo.slotInterface, nullptr);
    const Parameter& names = PolicyFileContentsInterface().members[0].parameters[0];
    EXPECT_EQ(names.type, ParameterType::DispatchSlot);
    EXPECT_EQ(names.slotInterface, &IID_IPolicyNames);
}

}  // namespace
}  // namespace zupm::test

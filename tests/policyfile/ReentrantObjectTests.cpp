// AddPolicy and AddTask of objects that call the file back, on the same thread, while they are asked for their data.

#include "PolicyFileTest.h"
#include "tests/support/ActingObjects.h"

namespace zupm::test {

namespace {

using namespace std::literals;

constexpr char kFile[] =
    "<R><PolicyRoot><PolicyGroup><Policy><Product SoftwareID='A'/></Policy></PolicyGroup></PolicyRoot>"
    "<TaskRoot><TaskGroup SoftwareID='A' TaskID='1'><Task/></TaskGroup></TaskRoot></R>";

const Answer kProductData{0, u"<X><Policy><Product SoftwareID='A'/></Policy></X>"};
const Answer kTaskData{0, u"<X><TaskGroup SoftwareID='A' TaskID='1'><Task/></TaskGroup></X>"};

class ReentrantObjects : public PolicyFileTest {
protected:
    void SetUp() override { ASSERT_EQ(LoadText(kFile), 0); }

    [[nodiscard]] std::string Buffer() const { return Utf8(m_file.Buffer().value_or(u"")); }

    HRESULT AddProduct(std::function<void()> onId, std::function<void()> onData)
    {
        ActingProduct product({0, u"A"}, kProductData);
        product.actions = {.onId = std::move(onId), .onData = std::move(onData)};
        const HRESULT code = m_file.Object()->AddPolicy(&product, 1);
        EXPECT_EQ(product.References(), 0U);
        return code;
    }
    HRESULT AddTask(std::function<void()> onId, std::function<void()> onData)
    {
        ActingTask task({0, u"A"}, {0, u"1"}, kTaskData);
        task.actions = {.onId = std::move(onId), .onData = std::move(onData)};
        const HRESULT code = m_file.Object()->AddTask(&task, 1);
        EXPECT_EQ(task.References(), 0U);
        return code;
    }
};

}  // namespace

TEST_F(ReentrantObjects, PolicyThatLooksItselfUp_IsThereWhenAskedForItsIDAndGoneWhenAskedForItsData)
{
    std::vector<HRESULT> found;
    const auto look = [&] { found.push_back(m_file.FindPolicy(u"A")); };
    const auto lookAtBoth = [&] {
        look();
        EXPECT_EQ(Buffer(), ReplaceOnce(kFile, "<Product SoftwareID='A'/>", "")) << "the old one is deleted by now";
        EXPECT_EQ(m_file.FindTask(u"A", u"1"), 0) << "the tasks are not concerned";
    };
    EXPECT_EQ(AddProduct(look, lookAtBoth), 0);
    look();
    EXPECT_EQ(found, (std::vector<HRESULT>{0, result::PolicyNotFound, 0}));
}

TEST_F(ReentrantObjects, TaskThatLooksItselfUp_IsThereWhenAskedForItsIDAndGoneWhenAskedForItsData)
{
    std::vector<HRESULT> found;
    const auto look = [&] { found.push_back(m_file.FindTask(u"A", u"1")); };
    const auto lookAtBoth = [&] {
        look();
        EXPECT_EQ(Buffer(), ReplaceOnce(kFile, "TaskID='1'><Task/>", "TaskID='1'>")) << "the old one is deleted by now";
        EXPECT_EQ(m_file.FindPolicy(u"A"), 0) << "the policies are not concerned";
    };
    EXPECT_EQ(AddTask(look, lookAtBoth), 0);
    look();
    EXPECT_EQ(found, (std::vector<HRESULT>{0, result::TaskNotFound, 0}));
}

TEST_F(ReentrantObjects, EntryAddedWhileDataIsAsked_IsInTheFileToo)
{
    EXPECT_EQ(AddProduct(nullptr, [&] { EXPECT_EQ(m_file.Add(m_file.NewPolicy(u"B")), 0); }), 0);
    EXPECT_EQ(m_file.FindPolicy(u"A"), 0);
    EXPECT_EQ(m_file.FindPolicy(u"B"), 0);
    EXPECT_EQ(AddTask(nullptr, [&] { EXPECT_EQ(m_file.Add(m_file.NewTask(u"B", u"2")), 0); }), 0);
    EXPECT_EQ(m_file.Tasks().All(), (std::vector{u"A/1"s, u"B/2"s}));
}

TEST_F(ReentrantObjects, EntryAddedAndRemovedWhileDataIsAsked_LeavesNoTrace)
{
    const auto addAndRemove = [&] {
        EXPECT_EQ(m_file.Add(m_file.NewTask(u"B", u"2")), 0);
        EXPECT_EQ(m_file.RemoveTask(u"B", u"2"), 0);
    };
    EXPECT_EQ(AddTask(nullptr, addAndRemove), 0);
    EXPECT_EQ(m_file.Tasks().All(), (std::vector{u"A/1"s}));
}

}  // namespace zupm::test

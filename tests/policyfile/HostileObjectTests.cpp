// AddPolicy and AddTask of objects that break the rules, throw, or call the same file while it asks them.

#include <functional>
#include <new>
#include <stdexcept>
#include <thread>

#include "PolicyFileTest.h"
#include "tests/support/ActingObjects.h"
#include "zuPolicyManager/zuPolicyManager.h"

namespace zupm::test {

namespace {

using namespace std::literals;

constexpr char kFile[] =
    "<R><PolicyRoot><PolicyGroup><Policy><Product SoftwareID='A'/><Product SoftwareID='B'/></Policy></PolicyGroup>"
    "</PolicyRoot><TaskRoot><TaskGroup SoftwareID='A' TaskID='1'><Task/></TaskGroup>"
    "<TaskGroup SoftwareID='A' TaskID='2'><Task/></TaskGroup></TaskRoot></R>";

constexpr char kOther[] =
    "<R><PolicyRoot version='3'><PolicyGroup><Policy><Product SoftwareID='O'/></Policy></PolicyGroup></PolicyRoot>"
    "<TaskRoot version='4'><TaskGroup SoftwareID='O' TaskID='7'><Task/></TaskGroup></TaskRoot></R>";

/// One of the two adds, with an object that the document could take.
struct Add {
    const char* name;
    const char* operation;
    HRESULT (*run)(IPolicyFile& file, const Actions& actions, ULONG& references);
};

const Add kAdds[] = {
    {"AddPolicy", "CPolicyFile::AddPolicy()",
     [](IPolicyFile& file, const Actions& actions, ULONG& references) {
         ActingProduct product({0, u"B"}, {0,
                                           u"<X><Policy><Product SoftwareID='B'><Section name='new'/></Product>"
                                           u"</Policy></X>"});
         product.actions = actions;
         const HRESULT code = file.AddPolicy(&product, 0);
         references = product.References();
         return code;
     }},
    {"AddTask", "CPolicyFile::AddTask()",
     [](IPolicyFile& file, const Actions& actions, ULONG& references) {
         ActingTask task({0, u"A"}, {0, u"2"},
                         {0,
                          u"<X><TaskGroup SoftwareID='A' TaskID='2'><Task><Section name='new'/></Task></TaskGroup>"
                          u"</X>"});
         task.actions = actions;
         const HRESULT code = file.AddTask(&task, 0);
         references = task.References();
         return code;
     }},
};

/// When the file calls the object, except for its release.
struct Moment {
    const char* name;
    std::function<void()> Actions::*when;
};

const Moment kMoments[] = {
    {"while it is queried", &Actions::onQuery},
    {"while it gives its ID", &Actions::onId},
    {"while it gives its data", &Actions::onData},
};

class HostileObjects : public PolicyFileTest {
protected:
    void SetUp() override { ASSERT_EQ(LoadText(kFile), 0); }

    [[nodiscard]] std::string Buffer() const { return Utf8(m_file.Buffer().value_or(u"")); }

    HRESULT Run(const Add& add, const Actions& actions)
    {
        ULONG references = 0;
        const HRESULT code = add.run(*m_file.Object(), actions, references);
        m_references = references;
        return code;
    }

    /// Another thread gets through, so no lock was left taken.
    void ExpectNoLockIsHeld()
    {
        std::thread([&] { static_cast<void>(m_file.FindPolicy(u"A")); }).join();
    }

    /// Calls `body` for each add and each moment, with a new file, and with actions that do `action` at that moment.
    template <class Body>
    void AtEachMoment(const std::function<void()>& action, Body body)
    {
        for (const Add& add : kAdds) {
            for (const Moment& moment : kMoments) {
                SCOPED_TRACE(add.name + " "s + moment.name);
                ASSERT_EQ(LoadText(kFile), 0);
                Actions actions;
                actions.*moment.when = action;
                body(add, actions);
            }
        }
    }

    ULONG m_references = 0;
};

/// Refuses every interface and leaves a pointer in the slot all the same, for which it counted no reference.
template <class Base>
class LeavesAPointer : public Base {
public:
    using Base::Base;

    HRESULT QueryInterface(REFIID, void** out) override
    {
        *out = static_cast<IUnknown*>(this);
        return E_NOINTERFACE;
    }
};

}  // namespace

TEST_F(HostileObjects, PointerLeftByAQueryThatFails_IsNotReleased)
{
    LeavesAPointer<ForeignProduct> product({0, u"B"}, {0, u"<X/>"});
    EXPECT_EQ(m_file.Object()->AddPolicy(&product, 0), result::BadArgument);
    EXPECT_EQ(product.References(), 0U);
    LeavesAPointer<ForeignTask> task({0, u"A"}, {0, u"2"}, {0, u"<X/>"});
    EXPECT_EQ(m_file.Object()->AddTask(&task, 0), result::BadArgument);
    EXPECT_EQ(task.References(), 0U);
    EXPECT_EQ(Buffer(), kFile);
}

TEST_F(HostileObjects, ExceptionOfAnObject_BecomesTheGuardsCodeAndItsLogLine)
{
    const auto throwOwn = [] { throw std::runtime_error("the object's own"); };
    AtEachMoment(throwOwn, [&](const Add& add, const Actions& actions) {
        // Every object that goes takes the log texts with it; a new one brings them back.
        const ComPtr<ITaskInfo> texts = Create<ITaskInfo>();
        LogCapture log;
        EXPECT_EQ(Run(add, actions), result::Unexpected);
        EXPECT_EQ(log.Take(), (std::vector{LogLine{1, "Unexpected exception in "s + add.operation}}));
        EXPECT_EQ(LastErrorDescription(), result::SentenceFor(result::Unexpected));
        ExpectNoLockIsHeld();
    });
}

TEST_F(HostileObjects, LackOfMemoryInAnObject_IsOutOfMemory)
{
    const auto runOutOfMemory = [] { throw std::bad_alloc(); };
    AtEachMoment(runOutOfMemory, [&](const Add& add, const Actions& actions) {
        LogCapture log;
        EXPECT_EQ(Run(add, actions), result::OutOfMemory);
        EXPECT_TRUE(log.Take().empty());
        ExpectNoLockIsHeld();
    });
}

TEST_F(HostileObjects, ExceptionOfAQueryOrAnID_ChangesNothing)
{
    for (const Add& add : kAdds) {
        for (const auto when : {&Actions::onQuery, &Actions::onId}) {
            Actions actions;
            actions.*when = [] { throw 5; };  // NOLINT(hicpp-exception-baseclass): what a stranger may do
            EXPECT_EQ(Run(add, actions), result::Unexpected) << add.name;
            EXPECT_EQ(Buffer(), kFile) << add.name;
            EXPECT_EQ(m_file.FindPolicy(u"B"), 0) << add.name;
            EXPECT_EQ(m_file.FindTask(u"A", u"2"), 0) << add.name;
        }
    }
}

TEST_F(HostileObjects, ExceptionOfAnID_ReleasesTheObject)
{
    for (const Add& add : kAdds) {
        Actions actions;
        actions.onId = [] { throw std::runtime_error("no"); };
        EXPECT_EQ(Run(add, actions), result::Unexpected) << add.name;
        EXPECT_EQ(m_references, 0U) << add.name;
    }
}

TEST_F(HostileObjects, ExceptionOfARelease_IsSwallowed)
{
    for (const Add& add : kAdds) {
        Actions actions;
        actions.onRelease = [] { throw std::runtime_error("no"); };
        LogCapture log;
        EXPECT_EQ(Run(add, actions), 0) << add.name;
        EXPECT_TRUE(log.Take().empty()) << add.name;
        EXPECT_EQ(m_references, 0U) << add.name;
        ExpectNoLockIsHeld();
    }
    EXPECT_EQ(m_file.Policy(u"B").RemoveSection(u"new"), 0);
    EXPECT_EQ(m_file.Task(u"A", u"2").RemoveSection(u"new"), 0);
}

TEST_F(HostileObjects, FileLoadedWhileAnObjectIsAsked_StaysAsLoadedAndTheAddFails)
{
    const std::u16string other = m_folder.Write(u"other.xml", kOther);
    const auto loadOther = [&] { EXPECT_EQ(m_file.Load(other), 0); };
    AtEachMoment(loadOther, [&](const Add& add, const Actions& actions) {
        LogCapture log;
        EXPECT_EQ(Run(add, actions), result::NotInitialised);
        EXPECT_EQ(LastErrorDescription(), u"The file was loaded again while the object was asked for its data.");
        EXPECT_TRUE(log.Take().empty()) << "no entry was put into an index twice";
        EXPECT_EQ(m_references, 0U);
        EXPECT_EQ(Buffer(), kOther);
        EXPECT_EQ(m_file.FindPolicy(u"O"), 0);
        EXPECT_EQ(m_file.FindPolicy(u"A"), result::PolicyNotFound);
        EXPECT_EQ(m_file.Tasks().All(), (std::vector{u"O/7"s}));
        EXPECT_EQ(m_file.VersionPolicy(), (TextResult{0, u"3"}));
        EXPECT_EQ(m_file.VersionTask(), (TextResult{0, u"4"}));
    });
}

TEST_F(HostileObjects, SameFileLoadedAgainForReadingWhileAnObjectIsAsked_StaysAsLoaded)
{
    const auto loadAgain = [&] { EXPECT_EQ(LoadText(kFile, 1), 0); };
    AtEachMoment(loadAgain, [&](const Add& add, const Actions& actions) {
        EXPECT_EQ(Run(add, actions), result::NotInitialised);
        EXPECT_EQ(Buffer(), kFile);
        EXPECT_EQ(m_file.FindPolicy(u"B"), 0);
        EXPECT_EQ(m_file.Tasks().All(), (std::vector{u"A/1"s, u"A/2"s}));
    });
}

TEST_F(HostileObjects, LoadThatFailsWhileAnObjectIsAsked_LeavesNothingLoaded)
{
    const auto failToLoad = [&] { EXPECT_EQ(LoadText("<R>"), result::SyntaxError); };
    AtEachMoment(failToLoad, [&](const Add& add, const Actions& actions) {
        EXPECT_EQ(Run(add, actions), result::NotInitialised);
        EXPECT_EQ(m_file.Buffer(), std::nullopt);
        EXPECT_EQ(m_file.FindPolicy(u"B"), result::NotInitialised);
    });
}

TEST_F(HostileObjects, EditOfTheSameFileWhileAnObjectIsAsked_IsInTheDocumentToo)
{
    for (const Add& add : kAdds) {
        ASSERT_EQ(LoadText(kFile), 0);
        Actions actions;
        actions.onData = [&] {
            EXPECT_EQ(m_file.Add(m_file.NewPolicy(u"C")), 0);
            EXPECT_EQ(m_file.Add(m_file.NewTask(u"C", u"9")), 0);
        };
        EXPECT_EQ(Run(add, actions), 0) << add.name;
        for (const char16_t* id : {u"A", u"B", u"C"}) {
            EXPECT_EQ(m_file.FindPolicy(id), 0) << add.name;
        }
        EXPECT_EQ(m_file.Tasks().All(), (std::vector{u"A/1"s, u"A/2"s, u"C/9"s})) << add.name;
    }
}

}  // namespace zupm::test

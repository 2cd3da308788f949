#include "MixEntries.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "tests/support/MemberCall.h"
#include "tests/support/Names.h"

namespace zupm::test {

MixEntries::MixEntries(PolicyFileClient& file, ProductClient product, TaskClient task, const TempFolder& folder,
                       int thread, Random& random)
    : m_file(&file),
      m_product(std::move(product)),
      m_task(std::move(task)),
      m_folder(&folder),
      m_owner(Numbered(u"thread", thread)),
      m_random(&random)
{
}

std::vector<MixStep> MixEntries::Steps()
{
    return {
        {"file: add own policy", 3, [this] { AddPolicy(); }},
        {"file: get own policy", 4, [this] { GetPolicy(*m_file, AnyId()); }},
        {"file: remove own policy", 2, [this] { RemovePolicy(); }},
        {"file: add own task", 3, [this] { AddTask(); }},
        {"file: get own task", 4, [this] { GetTask(*m_file, AnyId()); }},
        {"file: remove own task", 2, [this] { RemoveTask(); }},
        {"file: enumerate", 2, [this] { CheckTaskInfo(*m_file); }},
        {"file: list policies and tasks", 2, [this] { CheckLists(*m_file); }},
        {"file: add the shared product or task", 2, [this] { AddShared(); }},
        {"file: write to an own file and load it", 1, [this] { WriteAndLoad(); }},
        {"file: write over the others' file", 1, [this] { WriteOverOthers(); }},
        {"file: buffer", 1, [this] { GetBuffer(); }},
        {"file: properties", 4, [this] { GetProperties(); }},
    };
}

void MixEntries::AddPolicy()
{
    const std::u16string id = AnyId();
    const std::u16string value = Numbered(u"v", ++m_values);
    ProductClient product = m_file->NewPolicy(id);
    EXPECT_EQ(product.Put(u"S", u"N", value), 0);
    EXPECT_EQ(m_file->Add(product), 0);
    m_policies[id] = value;
}

void MixEntries::GetPolicy(const PolicyFileClient& file, const std::u16string& id) const
{
    ProductClient product;
    const HRESULT code = file.GetPolicy(id, product);
    if (const auto own = m_policies.find(id); own != m_policies.end()) {
        ASSERT_EQ(code, 0) << Utf8(id);
        EXPECT_EQ(product.Get(u"S", u"N"), (TextResult{0, own->second})) << Utf8(id);
    } else {
        EXPECT_EQ(code, result::PolicyNotFound) << Utf8(id);
    }
}

void MixEntries::RemovePolicy()
{
    const std::u16string id = AnyId();
    EXPECT_EQ(m_file->RemovePolicy(id), m_policies.erase(id) == 1 ? 0 : result::PolicyNotFound) << Utf8(id);
}

void MixEntries::AddTask()
{
    const std::u16string id = AnyId();
    const std::u16string value = Numbered(u"v", ++m_values);
    TaskClient task = m_file->NewTask(m_owner, id);
    EXPECT_EQ(task.Put(u"S", u"N", value), 0);
    EXPECT_EQ(m_file->Add(task), 0);
    m_tasks[id] = value;
}

void MixEntries::GetTask(const PolicyFileClient& file, const std::u16string& id) const
{
    TaskClient task;
    const HRESULT code = file.GetTask(m_owner, id, task);
    if (const auto own = m_tasks.find(id); own != m_tasks.end()) {
        ASSERT_EQ(code, 0) << Utf8(id);
        EXPECT_EQ(task.Get(u"S", u"N"), (TextResult{0, own->second})) << Utf8(id);
        EXPECT_EQ(task.SoftwareID(), (TextResult{0, m_owner}));
    } else {
        EXPECT_EQ(code, result::TaskNotFound) << Utf8(id);
    }
}

void MixEntries::RemoveTask()
{
    const std::u16string id = AnyId();
    const Bstr software(m_owner);
    const Bstr task(id);
    const CallOutcome outcome = MemberCall(m_file->Object(), u"RemoveTask").In(software).In(task).Call();
    EXPECT_EQ(outcome.code, m_tasks.erase(id) == 1 ? 0 : result::TaskNotFound) << Utf8(id);
}

void MixEntries::CheckTaskInfo(const PolicyFileClient& file) const
{
    std::vector<std::u16string> own;
    for (std::u16string& pair : file.Tasks().All()) {
        if (pair.starts_with(m_owner + u"/")) {
            own.push_back(std::move(pair));
        }
    }
    std::vector<std::u16string> expected;
    for (const auto& [id, value] : m_tasks) {
        expected.push_back(m_owner + u"/" + id);
    }
    EXPECT_EQ(own, expected);
}

void MixEntries::CheckLists(const PolicyFileClient& file) const
{
    const auto contents = ComPtr<IPolicyFile>(file.Object()).Query<IPolicyFileContents>();
    Names policies = ListOf([&](IPolicyNames** slot) { return contents->get_PolicyIDs(slot); }).names;
    std::erase_if(policies, [&](const std::u16string& id) { return !id.starts_with(m_owner + u"-"); });
    EXPECT_EQ(policies.size(), m_policies.size());
    for (const std::u16string& id : policies) {
        EXPECT_TRUE(m_policies.contains(id)) << Utf8(id);
    }
    const Names software = ListOf([&](IPolicyNames** slot) { return contents->get_TaskSoftwareIDs(slot); }).names;
    EXPECT_EQ(std::ranges::count(software, m_owner), m_tasks.empty() ? 0 : 1);
    const Bstr owner(m_owner);
    Names tasks = ListOf([&](IPolicyNames** slot) { return contents->GetTaskIDs(owner.Get(), slot); }).names;
    std::ranges::sort(tasks);
    Names expected;
    for (const auto& [id, value] : m_tasks) {
        expected.push_back(id);
    }
    EXPECT_EQ(tasks, expected);
}

void MixEntries::AddShared()
{
    const HRESULT code = Pick(*m_random, 2) == 0 ? m_file->Add(m_product) : m_file->Add(m_task);
    EXPECT_EQ(code, 0);
}

void MixEntries::WriteAndLoad()
{
    const std::u16string path = m_folder->Path(m_owner + u".xml");
    ASSERT_EQ(m_file->Write(path), 0);
    PolicyFileClient written;
    ASSERT_EQ(written.Load(path, 1), 0);
    Check(written);
}

void MixEntries::WriteOverOthers()
{
    const std::u16string path = m_folder->Path(u"shared.xml");
    ASSERT_EQ(m_file->Write(path), 0);
    // By now it may be the one that another thread wrote earlier or later, but it is one.
    PolicyFileClient written;
    EXPECT_EQ(written.Load(path), 0);
}

void MixEntries::GetBuffer()
{
    const std::u16string text = m_file->Buffer().value_or(u"");
    EXPECT_TRUE(text.starts_with(u"<R><PolicyRoot") && text.ends_with(u"</R>"));
    for (const auto& [id, value] : m_policies) {
        EXPECT_NE(text.find(u"SoftwareID=\"" + id + u"\""), text.npos) << Utf8(id);
    }
}

void MixEntries::GetProperties()
{
    for (const TextResult& version : {m_file->VersionPolicy(), m_file->VersionTask()}) {
        const std::u16string text = version.text.value_or(u"");
        EXPECT_TRUE(version.code == 0 && !text.empty() && text.find_first_not_of(u"0123456789") == text.npos);
    }
    EXPECT_EQ(m_file->AssignmentList(), (TextResult{0, u"all"}));
}

void MixEntries::Check(const PolicyFileClient& file)
{
    for (int number = 0; number < 3; ++number) {
        const std::u16string id = m_owner + Numbered(u"-", number);
        GetPolicy(file, id);
        GetTask(file, id);
    }
    CheckTaskInfo(file);
    CheckLists(file);
}

}  // namespace zupm::test

#include "MixReloads.h"
#include "zuPolicyManager/zuPolicyManager.h"

#include <gtest/gtest.h>

namespace zupm::test {

namespace {

/// What an operation may give while another thread's load has failed.
constexpr HRESULT kNotLoaded = result::NotInitialised;

}  // namespace

MixReloads::MixReloads(PolicyFileClient& file, std::u16string path, ProductClient product, const TempFolder& folder,
                       Random& random)
    : m_file(&file), m_path(std::move(path)), m_product(std::move(product)), m_folder(&folder), m_random(&random)
{
}

std::vector<MixStep> MixReloads::Steps()
{
    return {
        {"reloaded file: load", 3, [this] { Load(); }},
        {"reloaded file: load one that is missing", 1, [this] { LoadFailing(); }},
        {"reloaded file: add a policy", 2, [this] { EditPolicy(); }},
        {"reloaded file: remove a policy", 1, [this] { RemovePolicy(); }},
        {"reloaded file: add and remove a task", 2, [this] { EditTask(); }},
        {"reloaded file: get, enumerate, properties", 3, [this] { Read(); }},
        {"reloaded file: write", 1, [this] { Write(); }},
        {"objects come and go", 3, [this] { ComeAndGo(); }},
    };
}

void MixReloads::Load()
{
    EXPECT_EQ(m_file->Load(m_path), 0);
}

void MixReloads::LoadFailing()
{
    EXPECT_EQ(m_file->Load(m_folder->Path(u"none.xml")), result::FileNotFound);
}

void MixReloads::EditPolicy()
{
    const HRESULT code = m_file->Add(Pick(*m_random, 2) == 0 ? m_file->NewPolicy(u"s1") : m_product);
    EXPECT_TRUE(IsOneOf(code, {0, kNotLoaded})) << code;
}

void MixReloads::RemovePolicy()
{
    const HRESULT code = m_file->RemovePolicy(u"s1");
    EXPECT_TRUE(IsOneOf(code, {0, kNotLoaded, result::PolicyNotFound})) << code;
}

void MixReloads::EditTask()
{
    const HRESULT added = m_file->Add(m_file->NewTask(u"s1", u"1"));
    EXPECT_TRUE(IsOneOf(added, {0, kNotLoaded})) << added;
    const HRESULT removed = m_file->RemoveTask(u"s1", u"1");
    EXPECT_TRUE(IsOneOf(removed, {0, kNotLoaded, result::TaskNotFound})) << removed;
}

void MixReloads::Read()
{
    ProductClient product;
    const HRESULT policy = m_file->GetPolicy(u"s1", product);
    EXPECT_TRUE(IsOneOf(policy, {0, kNotLoaded, result::PolicyNotFound})) << policy;
    const HRESULT task = m_file->FindTask(u"s2", u"2");
    EXPECT_TRUE(IsOneOf(task, {0, kNotLoaded})) << task;
    ComPtr<IUnknown> pairs;
    EXPECT_TRUE(IsOneOf(m_file->Object()->GetTaskInfo(pairs.Put()), {0, kNotLoaded}));
    EXPECT_EQ(m_file->VersionPolicy().code, 0);
    EXPECT_EQ(m_file->AssignmentList(), (TextResult{0, u"all"}));
    const std::u16string text = m_file->Buffer().value_or(u"");
    EXPECT_TRUE(text.empty() || (text.starts_with(u"<R><PolicyRoot") && text.ends_with(u"</R>")));
}

void MixReloads::Write()
{
    const std::u16string path = m_folder->Path(u"reloaded.xml");
    const HRESULT code = m_file->Write(path);
    EXPECT_TRUE(IsOneOf(code, {0, kNotLoaded})) << code;
    PolicyFileClient written;
    EXPECT_TRUE(code != 0 || written.Load(path) == 0);
}

void MixReloads::ComeAndGo()
{
    const ComPtr<IPolicyFile> file = Create<IPolicyFile>();
    const ComPtr<ITaskInfo> pairs = Create<ITaskInfo>();
    EXPECT_EQ(TaskClient(Create<IPolicyTask>()).TaskID(), (TextResult{0, u"invalid"}));
    EXPECT_EQ(ProductClient(Create<IPolicyProduct>()).SoftwareID(), (TextResult{0, u"SoftwareID"}));
    const ComPtr<IPolicyFile> shared(m_file->Object());
    EXPECT_TRUE(shared.Query<IDispatch>());
    EXPECT_TRUE(shared.Query<ISupportErrorInfo>());
}

}  // namespace zupm::test

// The four classes as parts of an outer object.
#include <gtest/gtest.h>

#include <algorithm>

#include "module/ModuleServer.h"
#include "tests/module/Classes.h"
#include "tests/support/Bstr.h"
#include "tests/support/MemberCall.h"

namespace zupm::test {

namespace {

/// An outer object: hands every interface but IUnknown on to the inner one. It lives on the stack, so its count
/// only shows what the inner object did with it.
class OuterObject final : public IUnknown {
public:
    explicit OuterObject(const ClassRow& row) { m_created = CreateOf(row, this, IID_IUnknown, m_inner); }

    [[nodiscard]] HRESULT Created() const { return m_created; }
    [[nodiscard]] IUnknown* Inner() const { return m_inner.Get(); }
    [[nodiscard]] ULONG References() const { return m_references; }

    HRESULT QueryInterface(REFIID iid, void** out) override
    {
        if (!(iid == IID_IUnknown)) {
            return m_inner->QueryInterface(iid, out);
        }
        *out = static_cast<IUnknown*>(this);
        AddRef();
        return S_OK;
    }
    ULONG AddRef() override { return ++m_references; }
    ULONG Release() override { return --m_references; }

private:
    ULONG m_references = 1;
    HRESULT m_created = E_UNEXPECTED;
    ComPtr<IUnknown> m_inner;
};

}  // namespace

TEST(Aggregation, InterfacesOfTheInnerObjectHaveTheOutersIdentity)
{
    for (const ClassRow& row : kClasses) {
        OuterObject outer(row);
        ASSERT_EQ(outer.Created(), S_OK) << row.label;
        for (const IID* iid : {&row.iid, &IID_IDispatch, &IID_ISupportErrorInfo}) {
            ComPtr<IUnknown> part;
            ASSERT_EQ(outer.QueryInterface(*iid, part.PutVoid()), S_OK) << row.label;
            ComPtr<IUnknown> identity;
            ASSERT_EQ(part->QueryInterface(IID_IUnknown, identity.PutVoid()), S_OK);
            EXPECT_EQ(identity.Get(), static_cast<IUnknown*>(&outer)) << row.label;
            EXPECT_NE(part.Get(), outer.Inner()) << row.label;
        }
        EXPECT_EQ(outer.References(), 1U) << row.label;
    }
}

TEST(Aggregation, EditInterfaceOfAnInnerPolicyFileHasTheOutersIdentity)
{
    const auto row = std::ranges::find_if(kClasses, [](const ClassRow& entry) { return entry.iid == IID_IPolicyFile; });
    ASSERT_NE(row, std::end(kClasses));
    OuterObject outer(*row);
    ComPtr<IPolicyFileEdit> edit;
    ASSERT_EQ(outer.QueryInterface(IID_IPolicyFileEdit, edit.PutVoid()), S_OK);
    EXPECT_EQ(outer.References(), 2U);
    ComPtr<IUnknown> identity;
    ASSERT_EQ(edit->QueryInterface(IID_IUnknown, identity.PutVoid()), S_OK);
    EXPECT_EQ(identity.Get(), static_cast<IUnknown*>(&outer));
}

TEST(Aggregation, ReferencesToInnerInterfacesAreCountedByTheOuterObject)
{
    for (const ClassRow& row : kClasses) {
        OuterObject outer(row);
        ASSERT_EQ(outer.Created(), S_OK) << row.label;
        EXPECT_EQ(outer.References(), 1U) << row.label << ": the inner object keeps no reference to its outer one";
        ComPtr<IUnknown> part;
        ASSERT_EQ(outer.QueryInterface(row.iid, part.PutVoid()), S_OK);
        EXPECT_EQ(outer.References(), 2U) << row.label;
        EXPECT_EQ(part->AddRef(), 3U) << row.label;
        EXPECT_EQ(part->Release(), 2U) << row.label;
    }
}

TEST(Aggregation, TheInnerUnknownIsTheInnerObjectsOwn)
{
    for (const ClassRow& row : kClasses) {
        OuterObject outer(row);
        ASSERT_EQ(outer.Created(), S_OK) << row.label;
        ComPtr<IUnknown> inner;
        ASSERT_EQ(outer.Inner()->QueryInterface(IID_IUnknown, inner.PutVoid()), S_OK);
        EXPECT_EQ(inner.Get(), outer.Inner()) << row.label;
        EXPECT_EQ(outer.References(), 1U) << row.label;
        void* slot = &slot;
        EXPECT_EQ(outer.QueryInterface(IID_IClassFactory, &slot), E_NOINTERFACE) << row.label;
        EXPECT_EQ(slot, nullptr) << row.label;
    }
    EXPECT_EQ(ModuleCanUnloadNow(), S_OK);
}

TEST(Aggregation, OnlyIUnknownMayBeAskedForAtCreation)
{
    for (const ClassRow& row : kClasses) {
        ComPtr<IUnknown> outer;
        ASSERT_EQ(CreateOf(row, nullptr, IID_IUnknown, outer), S_OK);
        for (const IID* iid : {&row.iid, &IID_IDispatch}) {
            ComPtr<IUnknown> inner;
            EXPECT_EQ(CreateOf(row, outer.Get(), *iid, inner), CLASS_E_NOAGGREGATION) << row.label;
            EXPECT_FALSE(inner) << row.label;
        }
    }
}

TEST(Aggregation, AnInnerProductWorksThroughSlotsAndByName)
{
    OuterObject outer(kClasses[2]);
    ASSERT_EQ(outer.Created(), S_OK);
    ComPtr<IPolicyProduct> product;
    ASSERT_EQ(outer.QueryInterface(IID_IPolicyProduct, product.PutVoid()), S_OK);
    const Bstr id(u"P");
    EXPECT_EQ(product->put_SoftwareID(id.Get()), 0);
    EXPECT_EQ(MemberCall(product.Get(), u"SoftwareID").Get().text, u"P");
}

TEST(Aggregation, AnInnerObjectKeepsTheModuleLoadedUntilItGoes)
{
    {
        const OuterObject outer(kClasses[0]);
        ASSERT_EQ(outer.Created(), S_OK);
        EXPECT_EQ(ModuleCanUnloadNow(), S_FALSE);
    }
    EXPECT_EQ(ModuleCanUnloadNow(), S_OK);
}

TEST(Aggregation, APolicyFileTakesAnAggregatedProduct)
{
    OuterObject outer(kClasses[2]);
    ASSERT_EQ(outer.Created(), S_OK);
    const ComPtr<IPolicyFile> file = Create<IPolicyFile>();
    // Nothing is loaded, and a new file object counts as read-only.
    EXPECT_EQ(file->AddPolicy(&outer, 1), result::ReadOnly);
    EXPECT_EQ(outer.References(), 1U);
}

}  // namespace zupm::test

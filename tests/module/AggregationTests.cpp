// The four classes as parts of an outer object.
#include <gtest/gtest.h>

#include <algorithm>

#include "module/ModuleServer.h"
#include "tests/module/Classes.h"
#include "tests/support/Bstr.h"
#include "tests/support/MemberCall.h"
#include "tests/support/Names.h"
#include "tests/support/OuterObject.h"

namespace zupm::test {

namespace {

/// An outer object whose inner one is of that class.
struct OuterOf : OuterObject {
    explicit OuterOf(const ClassRow& row) : created(CreateOf(row, this, IID_IUnknown, inner)) {}

    const HRESULT created;
};

}  // namespace

TEST(Aggregation, InterfacesOfTheInnerObjectHaveTheOutersIdentity)
{
    for (const ClassRow& row : kClasses) {
        OuterOf outer(row);
        ASSERT_EQ(outer.created, S_OK) << row.label;
        for (const IID* iid : {&row.iid, &IID_IDispatch, &IID_ISupportErrorInfo}) {
            ComPtr<IUnknown> part;
            ASSERT_EQ(outer.QueryInterface(*iid, part.PutVoid()), S_OK) << row.label;
            ComPtr<IUnknown> identity;
            ASSERT_EQ(part->QueryInterface(IID_IUnknown, identity.PutVoid()), S_OK);
            EXPECT_EQ(identity.Get(), static_cast<IUnknown*>(&outer)) << row.label;
            EXPECT_NE(part.Get(), outer.inner.Get()) << row.label;
        }
        EXPECT_EQ(outer.references, 1U) << row.label;
    }
}

TEST(Aggregation, OtherInterfacesOfAnInnerObjectHaveTheOutersIdentity)
{
    struct Row {
        const IID& classInterface;
        const IID& other;
    };
    const Row rows[] = {
        {IID_IPolicyFile, IID_IPolicyFileEdit},
        {IID_IPolicyFile, IID_IPolicyFileContents},
        {IID_IPolicyProduct, IID_IPolicySections},
        {IID_IPolicyTask, IID_IPolicySections},
    };
    for (const Row& row : rows) {
        const auto theClass =
            std::ranges::find_if(kClasses, [&](const ClassRow& entry) { return entry.iid == row.classInterface; });
        ASSERT_NE(theClass, std::end(kClasses));
        OuterOf outer(*theClass);
        ComPtr<IUnknown> part;
        ASSERT_EQ(outer.QueryInterface(row.other, part.PutVoid()), S_OK) << theClass->label;
        EXPECT_EQ(outer.references, 2U) << theClass->label;
        ComPtr<IUnknown> identity;
        ASSERT_EQ(part->QueryInterface(IID_IUnknown, identity.PutVoid()), S_OK);
        EXPECT_EQ(identity.Get(), static_cast<IUnknown*>(&outer)) << theClass->label;
    }
}

TEST(Aggregation, AnInnerProductListsItsSectionsThroughSlotsAndByName)
{
    OuterOf outer(kClasses[2]);
    ASSERT_EQ(outer.created, S_OK);
    ComPtr<IPolicyProduct> product;
    ASSERT_EQ(outer.QueryInterface(IID_IPolicyProduct, product.PutVoid()), S_OK);
    const Bstr name(u"S");
    ASSERT_EQ(product->PutSectionSetting(name.Get(), name.Get(), name.Get()), 0);
    const auto names = MemberCall(product.Get(), u"SectionNames").Get().object.Query<IPolicyNames>();
    ASSERT_TRUE(names);
    EXPECT_EQ(ReadNames(*names), (Names{u"S"}));
    EXPECT_EQ(ListOf([&](IPolicyNames** slot) { return product.Query<IPolicySections>()->get_SectionNames(slot); }),
              AllOf({u"S"}));
}

TEST(Aggregation, ReferencesToInnerInterfacesAreCountedByTheOuterObject)
{
    for (const ClassRow& row : kClasses) {
        OuterOf outer(row);
        ASSERT_EQ(outer.created, S_OK) << row.label;
        EXPECT_EQ(outer.references, 1U) << row.label << ": the inner object keeps no reference to its outer one";
        ComPtr<IUnknown> part;
        ASSERT_EQ(outer.QueryInterface(row.iid, part.PutVoid()), S_OK);
        EXPECT_EQ(outer.references, 2U) << row.label;
        EXPECT_EQ(part->AddRef(), 3U) << row.label;
        EXPECT_EQ(part->Release(), 2U) << row.label;
    }
}

TEST(Aggregation, TheInnerUnknownIsTheInnerObjectsOwn)
{
    for (const ClassRow& row : kClasses) {
        OuterOf outer(row);
        ASSERT_EQ(outer.created, S_OK) << row.label;
        ComPtr<IUnknown> inner;
        ASSERT_EQ(outer.inner->QueryInterface(IID_IUnknown, inner.PutVoid()), S_OK);
        EXPECT_EQ(inner.Get(), outer.inner.Get()) << row.label;
        EXPECT_EQ(outer.references, 1U) << row.label;
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
    OuterOf outer(kClasses[2]);
    ASSERT_EQ(outer.created, S_OK);
    ComPtr<IPolicyProduct> product;
    ASSERT_EQ(outer.QueryInterface(IID_IPolicyProduct, product.PutVoid()), S_OK);
    const Bstr id(u"P");
    EXPECT_EQ(product->put_SoftwareID(id.Get()), 0);
    EXPECT_EQ(MemberCall(product.Get(), u"SoftwareID").Get().text, u"P");
}

TEST(Aggregation, AnInnerObjectKeepsTheModuleLoadedUntilItGoes)
{
    {
        const OuterOf outer(kClasses[0]);
        ASSERT_EQ(outer.created, S_OK);
        EXPECT_EQ(ModuleCanUnloadNow(), S_FALSE);
    }
    EXPECT_EQ(ModuleCanUnloadNow(), S_OK);
}

TEST(Aggregation, APolicyFileTakesAnAggregatedProduct)
{
    OuterOf outer(kClasses[2]);
    ASSERT_EQ(outer.created, S_OK);
    const ComPtr<IPolicyFile> file = Create<IPolicyFile>();
    // Nothing is loaded, and a new file object counts as read-only.
    EXPECT_EQ(file->AddPolicy(&outer, 1), result::ReadOnly);
    EXPECT_EQ(outer.references, 1U);
}

}  // namespace zupm::test

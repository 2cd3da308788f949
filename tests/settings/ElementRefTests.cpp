// Element references and the map of one section.
#include <gtest/gtest.h>

#include <memory>

#include "settings/CElementMap.h"
#include "settings/CElementRef.h"
#include "xml/Document.h"

namespace zupm::test {
namespace {

using AdvXMLParser::Document;
using AdvXMLParser::Element;

TEST(ElementRef, DeletingAReferenceThroughItsBaseLeavesTheDocument)
{
    const Document document(u"Root");
    const Element group = document.GetRoot().CreateElement(u"TaskGroup");
    const Element task = Element(group).CreateElement(u"Task");
    std::unique_ptr<CElementRef> reference = std::make_unique<CTaskRef>(group, task);
    reference.reset();
    EXPECT_FALSE(task.IsNull());
    EXPECT_FALSE(group.IsNull());
}

TEST(ElementRef, ATasksElementIsTheInnerOneAndAPolicysTheOuterOne)
{
    const Document document(u"Root");
    const Element outer = document.GetRoot().CreateElement(u"Outer");
    const Element inner = Element(outer).CreateElement(u"Inner");
    const CTaskRef task(outer, inner);
    EXPECT_EQ(task.GetElement(), inner);
    EXPECT_EQ(task.GetGroup(), outer);
    const CPolicyRef policy(outer, inner);
    EXPECT_EQ(policy.GetElement(), outer);
    EXPECT_EQ(policy.GetProduct(), inner);
}

TEST(ElementRef, ACopyRefersToTheSameElements)
{
    const Document document(u"Root");
    const Element outer = document.GetRoot().CreateElement(u"Outer");
    const Element inner = Element(outer).CreateElement(u"Inner");
    auto original = std::make_unique<CPolicyRef>(outer, inner);
    const CPolicyRef copy(*original);
    original.reset();
    EXPECT_EQ(copy.GetElement(), outer);
    EXPECT_EQ(copy.GetProduct(), inner);
}

TEST(ElementMap, TheFirstElementOfANameStays)
{
    const Document document(u"Root");
    const Element first = document.GetRoot().CreateElement(u"Setting");
    const Element second = document.GetRoot().CreateElement(u"Setting");
    CElementMap map;
    EXPECT_TRUE(map.Insert(u"A", first));
    EXPECT_FALSE(map.Insert(u"A", second));
    EXPECT_TRUE(map.Insert(u"a", second));
    const CElementMap::Index& settings = map.Settings();
    ASSERT_EQ(settings.Size(), 2U);
    ASSERT_NE(settings.Find(u"A"), nullptr);
    EXPECT_EQ((*settings.Find(u"A"))->GetElement(), first);
    EXPECT_EQ(settings.NameOf(*settings.InOrder().front()), u"A");
}

}  // namespace
}  // namespace zupm::test

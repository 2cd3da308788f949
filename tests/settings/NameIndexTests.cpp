// The index against a std::map that gets the same names; lists of its names.
#include "settings/NameIndex.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "settings/NameList.h"

namespace zupm::test {
namespace {

using Index = NameIndex<int>;
using Model = std::map<std::u16string, int>;

const Index::Entry& Seen(const Index::Entry& entry)
{
    return entry;
}
const Index::Entry& Seen(const Index::Entry* entry)
{
    return *entry;
}

template <class Entries>
Model Collected(const Index& index, const Entries& entries)
{
    Model collected;
    std::u16string_view last;
    for (const auto& element : entries) {
        const std::u16string_view name = index.NameOf(Seen(element));
        EXPECT_TRUE(collected.empty() || last < name) << "code-unit order, every name once";
        last = name;
        collected.emplace(name, Seen(element).value);
    }
    return collected;
}

/// Names of 0 to 40 units that share beginnings and ends; every fifth has units above the surrogates or a pair.
std::u16string NameOf(unsigned number)
{
    std::u16string name(number % 41, u'x');
    if (number % 5 == 0) {
        name += number % 2 == 0 ? u"\uFF21" : u"\U0001F600";
    }
    for (unsigned rest = number / 41; rest != 0; rest /= 10) {
        name.insert(name.begin(), static_cast<char16_t>(u'0' + rest % 10));
    }
    return name;
}

void ExpectEqual(const Index& index, const Model& model)
{
    EXPECT_EQ(index.Size(), model.size());
    EXPECT_EQ(Collected(index, index.InOrder()), model);
    for (const auto& [name, value] : model) {
        const int* const found = index.Find(name);
        ASSERT_NE(found, nullptr);
        EXPECT_EQ(*found, value);
    }
}

}  // namespace

TEST(NameIndex, HoldsWhatAMapHoldsAfterRandomEdits)
{
    std::mt19937 random(1);
    for (const unsigned names : {6U, 9U, 40U, 700U}) {
        Index index;
        Model model;
        for (int step = 0; step < 4000; ++step) {
            const std::u16string name = NameOf(static_cast<unsigned>(random()) % names);
            if (random() % 3 != 0) {
                const auto [place, isNew] = index.Insert(name, [&] { return step; });
                EXPECT_EQ(isNew, model.emplace(name, step).second);
                EXPECT_EQ(*place, model[name]) << "the first value stays";
            } else {
                index.Erase(name);
                model.erase(name);
            }
            EXPECT_EQ(index.Find(name) != nullptr, model.contains(name));
            if (random() % 500 == 0) {
                EXPECT_EQ(Collected(index, index.Sort()), model);
                ExpectEqual(index, model);
            }
        }
        ExpectEqual(index, model);
        index.Clear();
        ExpectEqual(index, {});
    }
}

TEST(NameIndex, ANameThatComesAndGoesTakesNoMoreRoom)
{
    Index index;
    index.Insert(u"stays", [] { return 1; });
    for (int turn = 0; turn < 100'000; ++turn) {
        index.Insert(u"a name that comes and goes", [] { return 2; });
        index.Erase(u"a name that comes and goes");
    }
    index.Insert(u"z", [] { return 3; });
    ASSERT_EQ(index.InOrder().size(), 2U);
    EXPECT_LT(index.InOrder().back()->begin, 1000U) << "where the last name begins";
}

TEST(NameIndex, KnowsTheOrderOfInsertionAfterItWasSorted)
{
    Index index;
    const auto inserted = [&] {
        std::vector<std::u16string> names;
        for (const Index::Entry* entry : index.AsInserted()) {
            names.emplace_back(index.NameOf(*entry));
        }
        return names;
    };
    std::vector<std::u16string> expected;
    for (const char16_t* name : {u"z", u"b", u"", u"m", u"a", u"q", u"zz", u"c", u"bb", u"k", u"l"}) {
        index.Insert(name, [] { return 0; });
        expected.emplace_back(name);
        EXPECT_EQ(inserted(), expected);
    }
    static_cast<void>(index.Sort());
    EXPECT_EQ(inserted(), expected);
    index.Erase(u"m");
    std::erase(expected, u"m");
    EXPECT_EQ(inserted(), expected);
    static_cast<void>(index.Sort());
    EXPECT_EQ(inserted(), expected);
}

TEST(NameIndex, PutsANameThatComesBackLast)
{
    Index index;
    for (const char16_t* name : {u"a", u"", u"b"}) {
        index.Insert(name, [] { return 0; });
    }
    index.Erase(u"");
    index.Insert(u"", [] { return 0; });
    ASSERT_EQ(index.AsInserted().size(), 3U);
    EXPECT_EQ(index.NameOf(*index.AsInserted().back()), u"");
}

TEST(NameList, HoldsNamesOneAfterTheOther)
{
    NameList list;
    EXPECT_EQ(list.Size(), 0U);
    for (const std::u16string_view name : {u"a", u"", u"long name", u""}) {
        list.Append(name);
    }
    ASSERT_EQ(list.Size(), 4U);
    EXPECT_EQ(list.At(0), u"a");
    EXPECT_EQ(list.At(1), u"");
    EXPECT_EQ(list.At(2), u"long name");
    EXPECT_EQ(list.At(3), u"");
}

TEST(NameList, HasTheNamesOfAnIndexWhoseValuesCount)
{
    Index index;
    for (const int value : {3, 1, 4, 15, 9, 2, 6, 53, 58, 97}) {
        index.Insert(NameOf(static_cast<unsigned>(value)), [&] { return value; });
    }
    const NameList odd = NamesOf(index, [](int value) { return value % 2 != 0; });
    std::vector<std::u16string_view> names;
    for (std::size_t i = 0; i < odd.Size(); ++i) {
        names.push_back(odd.At(i));
    }
    std::vector<std::u16string> expected;
    for (const unsigned value : {3U, 1U, 15U, 9U, 53U, 97U}) {
        expected.push_back(NameOf(value));
    }
    EXPECT_TRUE(std::ranges::equal(names, expected));
}

}  // namespace zupm::test

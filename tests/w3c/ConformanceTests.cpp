#include <gtest/gtest.h>

#include <cstdio>

#include "tests/w3c/Suite.h"

namespace zupm::test {
namespace {

/// The number of documents of a class that were accepted.
struct Count {
    int documents = 0;
    int accepted = 0;
    int rewritten = 0;
};

class Conformance : public testing::Test {
protected:
    void SetUp() override
    {
        if (!HasSuite()) {
            GTEST_SKIP() << "The W3C suite is not installed (ZUPM_XMLCONF).";
        }
    }

    /// Loads every document of a class and hands each outcome to `check`.
    template <class Check>
    static Count ForClass(const std::string& suiteClass, Check check)
    {
        Count count;
        for (const SuiteDocument& document : DocumentsOf(suiteClass)) {
            const Outcome outcome = Load(document);
            ++count.documents;
            count.accepted += outcome.isAccepted ? 1 : 0;
            count.rewritten += outcome.isRewrittenByteForByte ? 1 : 0;
            check(document, outcome);
        }
        std::printf("%-18s %4d documents: %4d refused, %4d accepted, %4d of them rewritten byte for byte\n",
                    suiteClass.c_str(), count.documents, count.documents - count.accepted, count.accepted,
                    count.rewritten);
        EXPECT_GT(count.documents, 0) << suiteClass;
        return count;
    }
};

TEST_F(Conformance, MalformedDocumentsAreRefusedEachWithAReason)
{
    for (const char* suiteClass : {"REJECT_ALL", "REJECT_5E", "REJECT_4E"}) {
        ForClass(suiteClass, [](const SuiteDocument& document, const Outcome& outcome) {
            EXPECT_FALSE(outcome.isAccepted) << document.id << " " << document.path;
            EXPECT_TRUE(outcome.isAccepted || !outcome.refusal.empty()) << document.id;
        });
    }
}

TEST_F(Conformance, WellFormedDocumentsAreAcceptedAndRewrittenByteForByte)
{
    ForClass("ACCEPT", [](const SuiteDocument& document, const Outcome& outcome) {
        EXPECT_TRUE(outcome.isAccepted || outcome.declaresEntities) << document.id << " " << outcome.refusal;
        EXPECT_TRUE(outcome.isAccepted || outcome.refusal.ends_with(": entity declarations are not supported"))
            << document.id << " " << outcome.refusal;
        EXPECT_EQ(outcome.isRewrittenByteForByte, outcome.isAccepted) << document.id;
    });
}

/// Parsers disagree on these: what is accepted must be written back byte for byte.
TEST_F(Conformance, DisputedDocumentsAreRefusedOrRewrittenByteForByte)
{
    for (const char* suiteClass :
         {"ACCEPT_5E_ONLY", "EXTERNAL_NOFETCH", "NS_REJECT", "NS_ACCEPT", "NOCRASH", "XML11_NOCRASH"}) {
        ForClass(suiteClass, [](const SuiteDocument& document, const Outcome& outcome) {
            EXPECT_EQ(outcome.isRewrittenByteForByte, outcome.isAccepted) << document.id;
            EXPECT_TRUE(outcome.isAccepted || !outcome.refusal.empty()) << document.id;
        });
    }
}

}  // namespace
}  // namespace zupm::test

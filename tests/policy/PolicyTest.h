/// What the tests of product policies share.
#pragma once

#include "tests/support/EntryTest.h"
#include "tests/support/ForeignObjects.h"

namespace zupm::test {

class PolicyTest : public EntryTest {
protected:
    /// Loads a file whose one "PolicyGroup" holds `policies`.
    void LoadPolicies(std::string_view policies)
    {
        Load("<File>\n<PolicyRoot>\n<PolicyGroup Path=\"p\">\n" + std::string(policies) +
             "</PolicyGroup>\n</PolicyRoot>\n</File>\n");
    }
};

}  // namespace zupm::test

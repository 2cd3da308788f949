/// A script of edits on one policy file.
#pragma once

#include <optional>
#include <string>

#include "fuzz/edit/Known.h"
#include "fuzz/support/Input.h"
#include "tests/support/PolicyFileClient.h"

namespace zupm::fuzz {

/// Edits a loaded file and remembers the names that it uses.
class Script {
public:
    Script(Input& input, test::PolicyFileClient& file) : m_input(input), m_file(file) {}

    /// Makes one edit. False when it failed and the file finds its entries only after it is loaded again.
    [[nodiscard]] bool Step();

    [[nodiscard]] const Known& Touched() const { return m_known; }

private:
    [[nodiscard]] bool EditProduct();
    [[nodiscard]] bool EditTask();
    [[nodiscard]] bool RemoveProduct();
    [[nodiscard]] bool RemoveTask();
    void PutFields(test::TaskClient& task);
    template <class Client>
    void EditSettings(Client& client);
    template <class Client>
    void PutSetting(Client& client, const NamePair& names);

    Input& m_input;
    test::PolicyFileClient& m_file;
    Known m_known;
};

}  // namespace zupm::fuzz

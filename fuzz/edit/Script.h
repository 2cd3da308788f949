/// A script of edits on one policy file.
#pragma once

#include <optional>
#include <string>

#include "fuzz/edit/Known.h"
#include "fuzz/support/Input.h"
#include "tests/support/PolicyFileClient.h"

namespace zupm::fuzz {

/// Edits a loaded file and remembers with what.
class Script {
public:
    Script(Input& input, test::PolicyFileClient& file) : m_input(input), m_file(file) {}

    /// One edit; false when it failed and the file does not find its entries any more until it is loaded again.
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

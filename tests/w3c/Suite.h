/// The W3C XML conformance suite with its classification.
#pragma once

#include <string>
#include <vector>

namespace zupm::test {

/// One document of the suite.
struct SuiteDocument {
    std::string id;
    std::string path;  ///< full path, UTF-8
};

/// The result of loading a document.
struct Outcome {
    bool declaresEntities = false;  ///< such documents are refused whatever their class
    bool isAccepted = false;
    bool isRewrittenByteForByte = false;
    std::string refusal;  ///< "line:column: reason" or the code of reading
};

/// The documents of a class; empty without the suite.
[[nodiscard]] std::vector<SuiteDocument> DocumentsOf(const std::string& suiteClass);

/// Whether the suite is installed.
[[nodiscard]] bool HasSuite();

/// Loads a document as a policy file is loaded.
[[nodiscard]] Outcome Load(const SuiteDocument& document);

}  // namespace zupm::test

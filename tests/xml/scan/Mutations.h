/// Texts that are nearly documents.
#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

namespace AdvXMLParser {

/// Makes the same text of the same seeds for the same number.
class Mutations {
public:
    /// At least one seed is needed; the first ones are taken for the built-in documents.
    explicit Mutations(std::vector<std::string> seeds);

    [[nodiscard]] std::string Text(std::uint64_t number) const;

private:
    void Mutate(std::string& text, std::mt19937_64& random) const;

    std::vector<std::string> m_seeds;
    std::size_t m_builtIn;
};

/// Documents that show every construct, plain and in the usual mistakes.
[[nodiscard]] std::vector<std::string> BuiltInSeeds();

/// All files below a folder as UTF-8 texts, those with a DOCTYPE also without it; files that are no text are left out.
[[nodiscard]] std::vector<std::string> SeedsBelow(const std::string& folder);

}  // namespace AdvXMLParser

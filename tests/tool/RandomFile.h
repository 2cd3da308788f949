/// Policy files made by chance.
#pragma once

#include <cstdint>
#include <random>
#include <string>
#include <string_view>

namespace zupm::test {

/// Makes a policy file for a seed: policies and tasks with fields, sections and settings, some of them twice, some
/// empty, with names and values of any script. Two files of different seeds have many names in common.
class RandomFile {
public:
    explicit RandomFile(std::uint32_t seed) : m_random(seed) {}

    [[nodiscard]] std::string Make();

private:
    [[nodiscard]] std::uint32_t Below(std::uint32_t end);
    [[nodiscard]] std::string Pick(bool isId);
    [[nodiscard]] std::string Value();
    [[nodiscard]] std::string Sections();
    [[nodiscard]] std::string Section();
    [[nodiscard]] std::string TaskGroup();

    std::mt19937 m_random;
};

}  // namespace zupm::test

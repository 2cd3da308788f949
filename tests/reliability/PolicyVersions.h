/// A policy file that is edited again and again, so that every version differs from every other.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tests/support/PolicyFileClient.h"

namespace zupm::test {

/// Makes version after version of one file of about 200 KB. Versions that are kDistinct apart have the same bytes; the
/// others differ in every setting and in size.
///
/// The component's clock must not move meanwhile (FixedClock): an edit leaves its time in the file.
class PolicyVersions {
public:
    static constexpr std::uint32_t kDistinct = 8;

    PolicyVersions();

    /// Turns the loaded file, of whatever version, into `version`. Throws std::runtime_error when an edit fails.
    static void Edit(PolicyFileClient& file, std::uint32_t version);

    /// The whole file as WriteFile writes it.
    [[nodiscard]] const std::string& Bytes(std::uint32_t version) const { return m_bytes[version % kDistinct]; }

    /// Which version (0 to kDistinct - 1) the loaded file is; nothing when it is none, or parts of several.
    [[nodiscard]] static std::optional<std::uint32_t> VersionOf(const PolicyFileClient& file);

    /// Loads the file at `path`; false unless it loads and is that version.
    [[nodiscard]] static bool Load(PolicyFileClient& file, std::u16string_view path, std::uint32_t version);

private:
    std::vector<std::string> m_bytes;
};

}  // namespace zupm::test

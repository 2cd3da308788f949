/// What a policy file holds, as the tool shows it: records in document order, small enough for a hostile file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <limits>
#include <string>
#include <string_view>

namespace zupm::tool {

/// A text of the file's contents, by its place in FileContents::texts. An empty one at the beginning is one that the
/// file does not have.
struct Piece {
    std::uint32_t offset = 0;
    std::uint32_t length = 0;
};

[[nodiscard]] constexpr bool IsMissing(Piece piece)
{
    return piece.offset == 0;
}

/// A place in the document, by its byte; see PlaceFinder.
using Offset = std::uint32_t;

/// No record.
inline constexpr std::uint32_t kNone = std::numeric_limits<std::uint32_t>::max();

struct Setting {
    Piece name;
    Piece value;
    std::uint32_t section = kNone;
    std::uint32_t next = kNone;  ///< the section's next setting
    Offset at = 0;               ///< its start tag; the same holds for the other records
};

/// The sections of one name in one entry; `at` is the first one's.
struct Section {
    Piece name;
    std::uint32_t entry = kNone;
    std::uint32_t firstSetting = kNone;
    std::uint32_t lastSetting = kNone;
    Offset at = 0;
};

/// A product's policy. Its sections are those from `firstSection` to before `endSection`; the same holds for tasks.
struct Policy {
    Piece softwareId;
    Piece version;
    std::uint32_t firstSection = 0;
    std::uint32_t endSection = 0;
    Offset at = 0;
};

/// Fields that the file does not have are empty.
struct Task {
    Piece softwareId;
    Piece taskId;
    Piece displayName;
    Piece type;
    Piece platforms;
    Piece creator;
    Piece priority;
    Piece version;
    std::uint32_t firstSection = 0;
    std::uint32_t endSection = 0;
    Offset at = 0;
    Offset group = 0;  ///< the start tag of its TaskGroup, which has the fields
};

/// The elements that a new entry needs, as far as the file has them.
struct Places {
    bool policyRoot = false;
    bool policyGroup = false;
    bool policy = false;
    bool taskRoot = false;
    // The first of each; the beginning of the document where there is none.
    Offset policyRootAt = 0;
    Offset taskRootAt = 0;
};

struct FileContents {
    std::string policyVersion;
    std::string taskVersion;
    std::string assignmentList;

    std::string texts;  ///< no text of the file is at the beginning; see Piece
    std::deque<Policy> policies;
    std::deque<Task> tasks;
    std::deque<Section> sections;
    std::deque<Setting> settings;
    Places places;

    [[nodiscard]] std::string_view Text(Piece piece) const
    {
        return std::string_view(texts).substr(piece.offset, piece.length);
    }
};

}  // namespace zupm::tool

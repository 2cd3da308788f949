/// The same document as libxml2 reads it: a second opinion on what a file holds.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace zupm::fuzz {

/// One element; texts are UTF-8, decoded.
struct PeerElement {
    std::string name;
    std::vector<std::pair<std::string, std::string>> attributes;
    /// The character data directly inside.
    std::string text;
    /// How many elements it is inside of.
    std::size_t depth = 0;
};

/// A document: its elements in document order.
struct PeerDocument {
    std::vector<PeerElement> elements;
};

/// What libxml2 makes of the bytes, or why it refuses them.
struct PeerReading {
    std::optional<PeerDocument> document;
    std::string refusal;
};

/// Reads names as they are written, without namespaces: neither library's users have any. Nothing outside is opened.
[[nodiscard]] PeerReading ReadWithPeer(std::string_view bytes);

}  // namespace zupm::fuzz

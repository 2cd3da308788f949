/// A strict scanner for XML 1.0: fast, and with two answers only.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "xml/scan/MarkFinder.h"

namespace AdvXMLParser {

enum class TagKind : std::uint8_t { Start, End, Empty };

/// One tag, as offsets into the text.
struct Tag {
    std::uint32_t begin;
    std::uint32_t end;  ///< after its '>'
    TagKind kind;
};

/// Takes the tags of a text, in order, many at a time. What it takes counts only when the text is accepted.
class TagSink {
public:
    /// May throw; the scan ends with the exception.
    virtual void Take(std::span<const Tag> tags) = 0;

protected:
    ~TagSink() = default;
};

/// How a text is scanned.
struct ScanOptions {
    /// Tags of elements on deeper levels are checked but not reported; the document element is on level 1.
    std::uint32_t reportedLevels = std::numeric_limits<std::uint32_t>::max();

    /// No result depends on these, only the time does.
    const MarkFinder* finder = &FastestMarkFinder();
    std::uint32_t pieceBytes = 16u << 10;
};

/// What is known of a document that was accepted.
struct ScannedDocument {
    std::string_view declaredEncoding;  ///< a view into the text; empty when it declares none
};

/// Accepts only what is well-formed and has no DOCTYPE. Nothing is returned for any other text, and for some that are
/// well-formed: those with more than 100,000 levels. Namespaces are not processed. The text is one whose size fits 32
/// bits.
/// Throws std::bad_alloc and what the sink throws.
[[nodiscard]] std::optional<ScannedDocument> ScanDocument(const std::string& text, TagSink& sink,
                                                          const ScanOptions& options = {});

/// The start tag of a document element that another parser has read.
struct RootTag {
    std::uint32_t begin;
    std::uint32_t end;
};

/// Whether what follows the start tag of the document element completes a well-formed document. The tag is well-formed
/// and no empty-element tag; it is not reported again.
/// Throws as ScanDocument does.
[[nodiscard]] bool ScanAfterRootTag(const std::string& text, const RootTag& root, TagSink& sink,
                                    const ScanOptions& options = {});

}  // namespace AdvXMLParser

/// A document's text at one moment.
#pragma once

#include <string_view>
#include <vector>

#include "xml/TextRuns.h"

namespace AdvXMLParser {

/// The text that a document had when the snapshot was taken, whatever is edited later. What was parsed is not copied,
/// because the document keeps it; only what was edited by then is.
///
/// Lifetime  The document outlives it. Movable.
class TextSnapshot {
public:
    /// An empty text.
    TextSnapshot() noexcept = default;
    /// `parsed` is what the document keeps unchanged; runs that do not lie in it are copied. Throws std::bad_alloc.
    TextSnapshot(TextRuns runs, std::string_view parsed);

    [[nodiscard]] const TextRuns& Runs() const noexcept { return m_runs; }

private:
    TextRuns m_runs;
    std::vector<char> m_copied;  ///< keeps its place when it is moved
};

}  // namespace AdvXMLParser

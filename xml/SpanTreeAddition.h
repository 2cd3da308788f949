/// What the edits of a span tree share.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <utility>

#include "xml/Exceptions.h"
#include "xml/SpanTree.h"

namespace AdvXMLParser {

/// New text on its way into the edit buffer, with the offsets that it will have there.
class SpanTree::Addition {
public:
    explicit Addition(const SpanTree& tree) noexcept : m_base(tree.EditBase() + tree.m_edits.size()) {}

    [[nodiscard]] std::uint32_t End() const
    {
        const std::size_t end = m_base + m_text.size();
        if (end >= std::numeric_limits<std::uint32_t>::max()) {
            throw DocumentTooLargeException();
        }
        return static_cast<std::uint32_t>(end);
    }
    void Reserve(std::size_t size) { m_text.reserve(size); }
    void Append(std::string_view text) { m_text.append(text); }
    [[nodiscard]] std::string Take() && noexcept { return std::move(m_text); }

private:
    std::size_t m_base;
    std::string m_text;
};

}  // namespace AdvXMLParser

/// A list of names.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "settings/NameIndex.h"

namespace zupm {

/// Names in one buffer, one after the other: a name needs no memory of its own.
///
/// Lifetime  A name is valid until the list changes.
/// Threads   None of its own. The const operations may run at the same time.
/// Errors    Reserve and Append throw std::bad_alloc.
class NameList {
public:
    /// Makes room for `count` names of `units` units together.
    void Reserve(std::size_t count, std::size_t units)
    {
        m_text.reserve(units);
        m_ends.reserve(count);
    }
    void Append(std::u16string_view name)
    {
        m_text.append(name);
        m_ends.push_back(m_text.size());
    }

    [[nodiscard]] std::size_t Size() const noexcept { return m_ends.size(); }
    /// The name at a place below Size.
    [[nodiscard]] std::u16string_view At(std::size_t place) const noexcept
    {
        const std::size_t begin = place == 0 ? 0 : m_ends[place - 1];
        return std::u16string_view(m_text).substr(begin, m_ends[place] - begin);
    }

private:
    std::u16string m_text;
    std::vector<std::size_t> m_ends;  ///< where each name ends in the text
};

/// The names of an index in the order in which they were inserted: those whose value `counts`. Throws std::bad_alloc.
template <class Value, class Counts>
[[nodiscard]] NameList NamesOf(const NameIndex<Value>& index, Counts counts)
{
    std::vector<const typename NameIndex<Value>::Entry*> entries = index.AsInserted();
    std::erase_if(entries, [&](const auto* entry) { return !counts(entry->value); });
    std::size_t units = 0;
    for (const auto* entry : entries) {
        units += entry->length;
    }
    NameList names;
    names.Reserve(entries.size(), units);
    for (const auto* entry : entries) {
        names.Append(index.NameOf(*entry));
    }
    return names;
}

}  // namespace zupm

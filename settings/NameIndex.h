/// Values by name: what every index is made of.
#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "settings/NameHash.h"

namespace zupm {

/// Values by name. All names lie in one buffer and all values in one array, so an entry needs no memory of its own. A
/// table of places finds a name by its hash. An entry that is erased keeps its place until the index grows.
///
/// Lifetime  A pointer to a value is valid until the next Insert, Sort or Clear.
/// Threads   None of its own. The const operations may run at the same time.
/// Errors    Insert, AsInserted and InOrder throw std::bad_alloc and then have changed nothing.
template <class Value>
class NameIndex {
public:
    struct Entry {
        std::size_t begin;  ///< of the name in the buffer
        std::uint32_t length;
        std::uint32_t hash;
        bool isErased;
        Value value;
    };

    [[nodiscard]] Value* Find(std::u16string_view name) noexcept
    {
        const std::size_t number = NumberOf(name, NameHash(name));
        return number == 0 ? nullptr : &m_entries[number - 1].value;
    }
    [[nodiscard]] const Value* Find(std::u16string_view name) const noexcept
    {
        const std::size_t number = NumberOf(name, NameHash(name));
        return number == 0 ? nullptr : &m_entries[number - 1].value;
    }

    /// Adds a name with the value that `make()` gives. When the index has the name already, it stays as it is.
    /// Gives the name's value, and whether it is new.
    template <class Make>
    std::pair<Value*, bool> Insert(std::u16string_view name, Make make)
    {
        const std::uint32_t hash = NameHash(name);
        if (const std::size_t number = NumberOf(name, hash); number != 0) {
            return {&m_entries[number - 1].value, false};
        }
        if (m_entries.size() == m_entries.capacity()) {
            Grow();
        }
        Entry entry{m_names.size(), static_cast<std::uint32_t>(name.size()), hash, false, make()};
        m_names.append(name);
        m_entries.push_back(std::move(entry));
        ++m_live;
        Place(m_entries.size());
        return {&m_entries.back().value, true};
    }

    /// Forgets a name if the index has it.
    void Erase(std::u16string_view name) noexcept
    {
        if (const std::size_t number = NumberOf(name, NameHash(name)); number != 0) {
            m_entries[number - 1].isErased = true;
            --m_live;
        }
    }

    /// Forgets everything and frees its memory.
    void Clear() noexcept { *this = NameIndex(); }

    [[nodiscard]] std::size_t Size() const noexcept { return m_live; }
    [[nodiscard]] std::u16string_view NameOf(const Entry& entry) const noexcept
    {
        return std::u16string_view(m_names).substr(entry.begin, entry.length);
    }

    /// The entries in the order in which they were inserted, also after Sort; an Insert after a Sort may lose it.
    [[nodiscard]] std::vector<const Entry*> AsInserted() const
    {
        // Names are appended to the buffer one after the other. Only an empty one lies where the next one begins.
        return Ordered([](const Entry* one, const Entry* other) {
            return one->begin != other->begin ? one->begin < other->begin : one->length < other->length;
        });
    }

    /// The entries in code-unit order of their names.
    [[nodiscard]] std::vector<const Entry*> InOrder() const
    {
        return Ordered([this](const Entry* one, const Entry* other) { return NameOf(*one) < NameOf(*other); });
    }

    /// The entries in the same order, which the index then keeps until an entry is inserted: it costs little again.
    [[nodiscard]] std::span<const Entry> Sort() noexcept
    {
        const auto isBefore = [this](const Entry& one, const Entry& other) { return NameOf(one) < NameOf(other); };
        const auto isErased = [](const Entry& entry) { return entry.isErased; };
        if (std::erase_if(m_entries, isErased) != 0 || !std::is_sorted(m_entries.begin(), m_entries.end(), isBefore)) {
            std::sort(m_entries.begin(), m_entries.end(), isBefore);
            PlaceAll();
        }
        return m_entries;
    }

private:
    template <class IsBefore>
    [[nodiscard]] std::vector<const Entry*> Ordered(IsBefore isBefore) const
    {
        std::vector<const Entry*> order;
        order.reserve(m_live);
        for (const Entry& entry : m_entries) {
            if (!entry.isErased) {
                order.push_back(&entry);
            }
        }
        if (!std::is_sorted(order.begin(), order.end(), isBefore)) {
            std::sort(order.begin(), order.end(), isBefore);
        }
        return order;
    }

    static constexpr std::size_t kWithoutTable = 8;  ///< so few entries are searched one by one

    [[nodiscard]] bool Matches(const Entry& entry, std::u16string_view name, std::uint32_t hash) const noexcept
    {
        return entry.hash == hash && !entry.isErased && NameOf(entry) == name;
    }
    /// The number of a name's entry, counted from 1; 0 when there is none.
    [[nodiscard]] std::size_t NumberOf(std::u16string_view name, std::uint32_t hash) const noexcept
    {
        if (m_table.empty()) {
            const auto place = std::find_if(m_entries.begin(), m_entries.end(),
                                            [&](const Entry& entry) { return Matches(entry, name, hash); });
            return place == m_entries.end() ? 0 : static_cast<std::size_t>(place - m_entries.begin()) + 1;
        }
        for (std::size_t slot = hash;; ++slot) {
            const std::uint32_t number = m_table[slot & (m_table.size() - 1)];
            if (number == 0 || Matches(m_entries[number - 1], name, hash)) {
                return number;
            }
        }
    }

    /// Enters the entry of that number, counted from 1, in the table.
    void Place(std::size_t number) noexcept
    {
        if (m_table.empty()) {
            return;
        }
        std::size_t slot = m_entries[number - 1].hash;
        while (m_table[slot & (m_table.size() - 1)] != 0) {
            ++slot;
        }
        m_table[slot & (m_table.size() - 1)] = static_cast<std::uint32_t>(number);
    }
    void PlaceAll() noexcept
    {
        std::fill(m_table.begin(), m_table.end(), 0);
        for (std::size_t number = 1; number <= m_entries.size(); ++number) {
            Place(number);
        }
    }

    /// Makes room for as many entries again, and leaves out those that were erased.
    void Grow()
    {
        NameIndex grown;
        const std::size_t capacity = std::max(kWithoutTable, std::bit_ceil(2 * m_live));
        grown.m_entries.reserve(capacity);
        grown.m_names.reserve(2 * m_names.size());
        if (capacity > kWithoutTable) {
            grown.m_table.resize(2 * capacity);
        }
        for (Entry& entry : m_entries) {
            if (!entry.isErased) {
                const std::size_t begin = grown.m_names.size();
                grown.m_names.append(NameOf(entry));
                entry.begin = begin;
                grown.m_entries.push_back(std::move(entry));
            }
        }
        grown.m_live = m_live;
        grown.PlaceAll();
        *this = std::move(grown);
    }

    std::u16string m_names;
    std::vector<Entry> m_entries;
    std::vector<std::uint32_t> m_table;  ///< numbers of entries, 0 in a free slot; a power of two in size
    std::size_t m_live = 0;
};

}  // namespace zupm

/// An ordered list of things with names, which finds each by its name.
#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace zupm::model {

/// `Item` has a member `std::string name`, which must not change while the item is in the list. No two items have the
/// same name. Finding, adding and removing cost about the same whatever the length of the list.
///
/// Lifetime  A value. References to items stay valid until the item is removed or the list is assigned to or moved.
template <class Item>
class Named {  // NOLINT(cppcoreguidelines-special-member-functions): one assignment, by value, serves both
public:
    class const_iterator {
    public:
        using Place = typename std::map<std::uint64_t, Item>::const_iterator;
        explicit const_iterator(Place place) : m_place(place) {}
        const Item& operator*() const { return m_place->second; }
        const Item* operator->() const { return &m_place->second; }
        const_iterator& operator++()
        {
            ++m_place;
            return *this;
        }
        friend bool operator==(const const_iterator& left, const const_iterator& right)
        {
            return left.m_place == right.m_place;
        }

    private:
        Place m_place;
    };

    Named() = default;
    Named(std::initializer_list<Item> items)
    {
        for (const Item& item : items) {
            Add(item);
        }
    }
    Named(const Named& other)
    {
        for (const Item& item : other) {
            Add(item);
        }
    }
    Named(Named&&) noexcept = default;
    Named& operator=(Named other) noexcept
    {
        std::swap(m_items, other.m_items);
        std::swap(m_numbers, other.m_numbers);
        std::swap(m_next, other.m_next);
        return *this;
    }
    ~Named() = default;

    [[nodiscard]] const_iterator begin() const { return const_iterator(m_items.begin()); }
    [[nodiscard]] const_iterator end() const { return const_iterator(m_items.end()); }
    [[nodiscard]] std::size_t Size() const noexcept { return m_items.size(); }
    [[nodiscard]] bool IsEmpty() const noexcept { return m_items.empty(); }

    /// Null when there is none.
    [[nodiscard]] const Item* Find(std::string_view name) const
    {
        const auto found = m_numbers.find(name);
        return found == m_numbers.end() ? nullptr : &m_items.at(found->second);
    }
    [[nodiscard]] Item* Find(std::string_view name)
    {
        return const_cast<Item*>(std::as_const(*this).Find(name));  // NOLINT(cppcoreguidelines-pro-type-const-cast)
    }
    /// Adds an item at the end; one of its name stays as it is. Returns the item that has the name.
    Item& Add(Item item)
    {
        if (Item* const existing = Find(item.name); existing != nullptr) {
            return *existing;
        }
        const auto place = m_items.emplace_hint(m_items.end(), m_next, std::move(item));
        m_numbers.emplace(place->second.name, m_next++);
        return place->second;
    }
    /// Whether there was one.
    bool Remove(std::string_view name)
    {
        const auto found = m_numbers.find(name);
        if (found == m_numbers.end()) {
            return false;
        }
        const std::uint64_t number = found->second;
        m_numbers.erase(found);
        m_items.erase(number);
        return true;
    }

private:
    std::map<std::uint64_t, Item> m_items;
    std::unordered_map<std::string_view, std::uint64_t> m_numbers;  ///< the names are those in the items
    std::uint64_t m_next = 0;
};

}  // namespace zupm::model

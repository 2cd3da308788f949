/// The iterator of this header's ranges: it walks a list that was taken at one moment and makes an object of each row.
#pragma once

#include <cstddef>
#include <iterator>
#include <memory>
#include <optional>
#include <utility>

namespace zupm::client {

/// An input iterator. `Source` has `value_type`, `std::size_t Count() const`, and `std::optional<value_type>
/// Make(std::size_t) const`, which gives nothing for a row to be passed over.
///
/// Lifetime  Owns what it walks and the object that it is at. A reference to the object is valid as long as an
///           iterator at that place lives.
/// Threads   None of its own; several threads may each walk with an iterator of their own.
/// Errors    Constructor and increment throw what Make throws.
template <class Source>
class Iterator {
public:
    using iterator_category = std::input_iterator_tag;
    using value_type = typename Source::value_type;
    using difference_type = std::ptrdiff_t;
    using pointer = value_type*;
    using reference = value_type&;

    /// The end.
    Iterator() noexcept = default;
    /// The first row; the end when there is none.
    explicit Iterator(std::shared_ptr<const Source> source) : m_source(std::move(source)) { Settle(); }

    reference operator*() const noexcept { return *m_value; }
    pointer operator->() const noexcept { return m_value.get(); }

    Iterator& operator++()
    {
        ++m_row;
        Settle();
        return *this;
    }
    Iterator operator++(int)
    {
        Iterator before = *this;
        ++*this;
        return before;
    }

    /// Two iterators are equal at the same row of the same walk, and at the end.
    friend bool operator==(const Iterator& left, const Iterator& right) noexcept
    {
        return left.m_source == right.m_source && left.m_row == right.m_row;
    }
    friend bool operator!=(const Iterator& left, const Iterator& right) noexcept { return !(left == right); }

private:
    /// Makes the object of this row, or of the next one that has one.
    void Settle()
    {
        for (; m_row < m_source->Count(); ++m_row) {
            if (std::optional<value_type> made = m_source->Make(m_row)) {
                m_value = std::make_shared<value_type>(std::move(*made));
                return;
            }
        }
        *this = Iterator();
    }

    std::shared_ptr<const Source> m_source;
    std::size_t m_row = 0;
    std::shared_ptr<value_type> m_value;
};

/// A range that can be walked any number of times; each walk sees the list as it was when the range was made.
template <class Source>
class Range {
public:
    using value_type = typename Source::value_type;
    using iterator = Iterator<Source>;
    using const_iterator = iterator;

    explicit Range(Source source) : m_source(std::make_shared<const Source>(std::move(source))) {}

    [[nodiscard]] iterator begin() const { return m_source ? iterator(m_source) : iterator(); }
    [[nodiscard]] iterator end() const noexcept { return {}; }
    /// The length of the list when it was made; a walk may pass over rows.
    [[nodiscard]] std::size_t Count() const noexcept { return m_source ? m_source->Count() : 0; }

private:
    std::shared_ptr<const Source> m_source;
};

}  // namespace zupm::client

/// Storage of element records.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>
#include <type_traits>
#include <vector>

namespace AdvXMLParser {

/// One element as offsets into its tree's text. The text from `before` to `content` is contiguous, and so is the text
/// from `tail` to the end of the end tag.
struct ElementRecord {
    std::uint32_t before = 0;   ///< where the text between the preceding markup and the start tag begins
    std::uint32_t content = 0;  ///< the end of the start tag
    std::uint32_t tail = 0;     ///< the end of the last child
    std::uint32_t end = 0;      ///< the end tag's '<'; equal to `content` for an empty-element tag
    std::uint32_t parent = 0;
    std::uint32_t firstChild = 0;
    std::uint32_t next = 0;        ///< 0 for the last child
    std::uint32_t previous = 0;    ///< for the first child: the last child
    std::uint32_t generation = 0;  ///< counts how often the record was freed
};

/// A record and its index.
struct RecordPlace {
    std::uint32_t index = 0;
    ElementRecord* record = nullptr;
};

/// Records by index, in chunks that never move. The chunks double in size up to a limit, so that an almost empty chunk
/// wastes little.
///
/// Errors    Reserve throws std::bad_alloc and then has changed nothing; nothing else throws.
class RecordStore {
public:
    [[nodiscard]] ElementRecord& operator[](std::uint32_t index) noexcept
    {
        const Place place = PlaceOf(index);
        return m_chunks[place.chunk].get()[place.offset];
    }
    [[nodiscard]] const ElementRecord& operator[](std::uint32_t index) const noexcept
    {
        const Place place = PlaceOf(index);
        return m_chunks[place.chunk].get()[place.offset];
    }

    /// Makes the next `count` calls of Append succeed.
    void Reserve(std::size_t count)
    {
        for (const std::size_t needed = m_used + count; m_capacity < needed;) {
            const std::size_t size = SizeOf(m_chunks.size());
            m_chunks.push_back(NewChunk(size));
            m_capacity += size;
        }
    }

    /// Keeps a record. Its generation differs from that of earlier users of the index.
    RecordPlace Append(const ElementRecord& values) noexcept
    {
        if (m_firstFree != 0) [[unlikely]] {
            return Reuse(values);
        }
        if (m_next == m_chunkEnd) [[unlikely]] {
            OpenChunk();
        }
        ElementRecord* const record = m_next++;
        *record = values;
        return {static_cast<std::uint32_t>(m_used++), record};
    }

    void Free(std::uint32_t index) noexcept
    {
        ElementRecord& record = (*this)[index];
        record = ElementRecord{.next = m_firstFree, .generation = record.generation + 1};
        m_firstFree = index;
    }

private:
    static constexpr std::size_t kFirstChunk = 16;
    static constexpr std::size_t kLargestChunk = 16384;
    /// Chunks before the first of the largest size, and the records that they hold together.
    static constexpr std::size_t kSmallChunks = std::bit_width(kLargestChunk / kFirstChunk) - 1;
    static constexpr std::size_t kInSmallChunks = kLargestChunk - kFirstChunk;

    struct Place {
        std::size_t chunk;
        std::size_t offset;
    };
    struct FreeMemory {
        void operator()(ElementRecord* chunk) const noexcept { ::operator delete(chunk); }
    };
    using Chunk = std::unique_ptr<ElementRecord, FreeMemory>;

    static constexpr std::size_t SizeOf(std::size_t chunk) noexcept
    {
        return chunk < kSmallChunks ? kFirstChunk << chunk : kLargestChunk;
    }
    [[gnu::always_inline]] static constexpr Place PlaceOf(std::uint32_t index) noexcept
    {
        if (index >= kInSmallChunks) {
            const std::size_t beyond = index - kInSmallChunks;
            return {kSmallChunks + beyond / kLargestChunk, beyond % kLargestChunk};
        }
        const std::size_t shifted = index + kFirstChunk;
        const auto chunk = static_cast<std::size_t>(std::bit_width(shifted) - std::bit_width(kFirstChunk));
        return {chunk, shifted - (kFirstChunk << chunk)};
    }
    /// Memory that nobody writes to before records are put there.
    static Chunk NewChunk(std::size_t size)
    {
        static_assert(std::is_trivially_copyable_v<ElementRecord> && std::is_trivially_destructible_v<ElementRecord>);
        return Chunk(static_cast<ElementRecord*>(::operator new(size * sizeof(ElementRecord))));
    }

    /// Goes on to the chunk of the next unused index.
    void OpenChunk() noexcept
    {
        const std::size_t chunk = PlaceOf(static_cast<std::uint32_t>(m_used)).chunk;
        m_next = m_chunks[chunk].get();
        m_chunkEnd = m_next + SizeOf(chunk);
    }
    RecordPlace Reuse(const ElementRecord& values) noexcept
    {
        const std::uint32_t index = m_firstFree;
        ElementRecord& record = (*this)[index];
        const std::uint32_t generation = record.generation;
        m_firstFree = record.next;
        record = values;
        record.generation = generation;
        return {index, &record};
    }

    std::vector<Chunk> m_chunks;
    std::size_t m_capacity = 0;
    std::size_t m_used = 0;
    ElementRecord* m_next = nullptr;  ///< the place of index `m_used`, when its chunk is open
    ElementRecord* m_chunkEnd = nullptr;
    std::uint32_t m_firstFree = 0;  ///< index 0 is the document's and is never freed
};

}  // namespace AdvXMLParser

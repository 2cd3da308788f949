/// Taking a fuzzer's input apart.
#pragma once

#include <fuzzer/FuzzedDataProvider.h>

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace zupm::fuzz {

/// The bytes of one input as the choices and texts of a script.
///
/// Errors  None: after the end every number is 0 and every text empty.
class Input {
public:
    Input(const std::uint8_t* data, std::size_t size) : m_bytes(data, size) {}
    explicit Input(std::string_view bytes) : m_bytes(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size())
    {
    }

    [[nodiscard]] bool IsAtEnd() { return m_bytes.remaining_bytes() == 0; }

    /// A number from 0 to `last`.
    template <class Number>
    [[nodiscard]] Number UpTo(Number last)
    {
        return m_bytes.ConsumeIntegralInRange<Number>(0, last);
    }
    [[nodiscard]] bool Flag() { return m_bytes.ConsumeBool(); }
    [[nodiscard]] std::int32_t Number() { return m_bytes.ConsumeIntegral<std::int32_t>(); }

    /// Bytes of the input's own choice, at most `longest`.
    [[nodiscard]] std::string Bytes(std::size_t longest) { return m_bytes.ConsumeRandomLengthString(longest); }
    /// All bytes that are left.
    [[nodiscard]] std::string Rest() { return m_bytes.ConsumeRemainingBytesAsString(); }

    /// A text: mostly one of `usual`, above all one of the first; otherwise UTF-16 that may be anything, unpaired
    /// surrogates and nulls included.
    [[nodiscard]] std::u16string Text(std::span<const std::u16string_view> usual = {});

private:
    FuzzedDataProvider m_bytes;
};

}  // namespace zupm::fuzz

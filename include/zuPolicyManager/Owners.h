/// Owners of what the component's interfaces hand out: references to objects, and strings. C++17; for clients and for
/// the component itself.
///
/// Threads   None of their own: an owner is a value of the thread or object that has it.
/// Errors    Only making a Bstr from a text and copying a text throw (std::bad_alloc); AllocateString never throws.
#pragma once

#include <zuPolicyManager/ComBase.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <new>
#include <string>
#include <string_view>
#include <utility>

namespace zupm {

/// Owns one reference to an object; `Type` is an interface, or a class that has AddRef and Release.
template <class Type>
class ComPtr {  // NOLINT(cppcoreguidelines-special-member-functions): one assignment, by value, serves both
public:
    ComPtr() noexcept = default;
    ComPtr(std::nullptr_t) noexcept {}  // NOLINT(google-explicit-constructor): an empty owner
    /// Takes a reference of its own.
    explicit ComPtr(Type* object) noexcept : m_object(object)
    {
        if (m_object != nullptr) {
            m_object->AddRef();
        }
    }
    ~ComPtr() { Reset(); }
    ComPtr(const ComPtr& other) noexcept : ComPtr(other.m_object) {}
    ComPtr(ComPtr&& other) noexcept : m_object(other.Detach()) {}
    ComPtr& operator=(ComPtr other) noexcept
    {
        std::swap(m_object, other.m_object);
        return *this;
    }

    /// Owns a reference that the caller holds already.
    [[nodiscard]] static ComPtr Attach(Type* object) noexcept
    {
        ComPtr owner;
        owner.m_object = object;
        return owner;
    }

    [[nodiscard]] Type* Get() const noexcept { return m_object; }
    Type* operator->() const noexcept { return m_object; }
    Type& operator*() const noexcept { return *m_object; }
    explicit operator bool() const noexcept { return m_object != nullptr; }

    /// The slot for a call that hands out a reference. What is owned is released first.
    [[nodiscard]] Type** Put() noexcept
    {
        Reset();
        return &m_object;
    }
    [[nodiscard]] void** PutVoid() noexcept { return reinterpret_cast<void**>(Put()); }
    /// Gives the reference to the caller.
    [[nodiscard]] Type* Detach() noexcept { return std::exchange(m_object, nullptr); }
    void Reset() noexcept
    {
        if (Type* const object = Detach(); object != nullptr) {
            object->Release();
        }
    }

    /// Asks the object for another interface. Returns the result of QueryInterface; `other` is empty after a failure.
    template <class Other>
    [[nodiscard]] HRESULT Query(REFIID iid, ComPtr<Other>& other) const noexcept
    {
        return m_object->QueryInterface(iid, other.PutVoid());
    }
    /// Another interface of the object; empty when it has none, or when there is no object.
    template <class Other>
    [[nodiscard]] ComPtr<Other> Query() const noexcept
    {
        ComPtr<Other> other;
        if (m_object != nullptr) {
            static_cast<void>(Query(InterfaceTraits<Other>::Id(), other));
        }
        return other;
    }

private:
    Type* m_object = nullptr;
};

static_assert(sizeof(OLECHAR) == sizeof(char16_t), "a BSTR is UTF-16 on every target");

/// A copy of a string with its embedded nulls; null counts as the empty string.
[[nodiscard]] inline std::u16string TextOf(BSTR text)
{
    std::u16string copy(SysStringLen(text), u'\0');
    if (!copy.empty()) {
        std::memcpy(copy.data(), text, copy.size() * sizeof(char16_t));
    }
    return copy;
}

/// A new string of that many units for the caller to fill and to free; null when memory runs out or the text is too
/// long for a length prefix.
[[nodiscard]] inline BSTR AllocateString(std::size_t length) noexcept
{
    // The length prefix counts bytes in 32 bits, without the null unit at the end.
    constexpr std::size_t longest = (UINT32_MAX - sizeof(std::uint32_t) - sizeof(OLECHAR)) / sizeof(OLECHAR);
    return length > longest ? nullptr : SysAllocStringLen(nullptr, static_cast<UINT>(length));
}

/// A new string, which the caller frees; null as above.
[[nodiscard]] inline BSTR AllocateString(std::u16string_view text) noexcept
{
    const BSTR copy = AllocateString(text.size());
    if (copy != nullptr && !text.empty()) {
        std::memcpy(copy, text.data(), text.size() * sizeof(char16_t));
    }
    return copy;
}

/// Owns one string; an empty owner has the null string.
class Bstr {
public:
    Bstr() noexcept = default;
    /// Throws std::bad_alloc.
    Bstr(std::u16string_view text) : m_text(AllocateString(text))  // NOLINT(google-explicit-constructor): an argument
    {
        if (m_text == nullptr) {
            throw std::bad_alloc();
        }
    }
    Bstr(const std::u16string& text) : Bstr(std::u16string_view(text)) {}  // NOLINT(google-explicit-constructor)
    Bstr(const char16_t* text) : Bstr(std::u16string_view(text)) {}        // NOLINT(google-explicit-constructor)
    ~Bstr() { SysFreeString(m_text); }
    Bstr(Bstr&& other) noexcept : m_text(other.Detach()) {}
    Bstr& operator=(Bstr&& other) noexcept
    {
        std::swap(m_text, other.m_text);
        return *this;
    }
    Bstr(const Bstr&) = delete;
    Bstr& operator=(const Bstr&) = delete;

    [[nodiscard]] BSTR Get() const noexcept { return m_text; }
    [[nodiscard]] std::u16string Text() const { return TextOf(m_text); }
    /// The slot for a call of the component's interfaces: they free what it holds when they store a new string.
    [[nodiscard]] BSTR* Slot() noexcept { return &m_text; }
    /// The slot for any other call that hands out a string. What is owned is freed first.
    [[nodiscard]] BSTR* Put() noexcept
    {
        SysFreeString(Detach());
        return &m_text;
    }
    /// Gives the string to the caller.
    [[nodiscard]] BSTR Detach() noexcept { return std::exchange(m_text, nullptr); }

private:
    BSTR m_text = nullptr;
};

}  // namespace zupm

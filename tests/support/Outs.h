/// Out slots that hold something before the call, so that a test sees whether a call left them alone.
#pragma once

#include <string>
#include <utility>

#include "tests/support/Bstr.h"
#include "tests/support/ComPtr.h"

namespace zupm::test {

inline constexpr std::u16string_view kPoisonText = u"the slot held this before the call";
inline constexpr LONG kPoisonNumber = 0x5A5A1234;

/// A string slot. The string that it holds at first is an own one, so a callee may free it.
class OutText {
public:
    OutText() : m_slot(kPoisonText), m_before(m_slot.Get()) {}

    [[nodiscard]] BSTR* Slot() { return m_slot.Slot(); }
    [[nodiscard]] bool Untouched() const { return m_slot.Get() == m_before && m_slot.Text() == kPoisonText; }
    [[nodiscard]] bool IsNull() const { return m_slot.Get() == nullptr; }
    [[nodiscard]] std::u16string Text() const { return m_slot.Text(); }
    /// Empties the slot, for a call that overwrites what the slot holds without freeing it.
    void Clear() { m_slot = Bstr(); }
    /// Puts a new text into the slot.
    void Assign(std::u16string_view text) { m_slot = Bstr(text); }

private:
    Bstr m_slot;
    BSTR m_before;
};

class OutNumber {
public:
    [[nodiscard]] LONG* Slot() { return &m_slot; }
    [[nodiscard]] bool Untouched() const { return m_slot == kPoisonNumber; }
    [[nodiscard]] LONG Value() const { return m_slot; }

private:
    LONG m_slot = kPoisonNumber;
};

/// An interface slot. What it holds at first is an address that nobody may call; callees do not release it.
template <class Interface>
class OutObject {
public:
    OutObject() = default;
    ~OutObject() { static_cast<void>(Take()); }
    OutObject(const OutObject&) = delete;
    OutObject& operator=(const OutObject&) = delete;

    [[nodiscard]] Interface** Slot() { return &m_slot; }
    [[nodiscard]] bool Untouched() const { return m_slot == Poison(); }
    [[nodiscard]] bool IsNull() const { return m_slot == nullptr; }
    /// Moves the reference out; null when the slot was untouched. The slot is poisoned again.
    [[nodiscard]] ComPtr<Interface> Take()
    {
        Interface* object = std::exchange(m_slot, Poison());
        return object == Poison() ? ComPtr<Interface>() : ComPtr<Interface>::Attach(object);
    }
    /// Takes a reference over, as a callee would store it.
    void Store(Interface* object)
    {
        static_cast<void>(Take());
        m_slot = object;
    }

private:
    [[nodiscard]] static Interface* Poison() { return reinterpret_cast<Interface*>(std::uintptr_t{0x10}); }

    Interface* m_slot = Poison();
};

}  // namespace zupm::test

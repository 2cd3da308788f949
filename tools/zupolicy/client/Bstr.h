/// Owner of one string of the component's interfaces.
#pragma once

#include <zuPolicyManager/zuPolicyManager.h>

#include <string>
#include <string_view>

namespace zupm::tool {

/// A length-prefixed wide string, either one that we pass or a slot that the component fills.
///
/// Lifetime  Destroying it frees the string.
/// Errors    The constructor throws std::bad_alloc.
class Bstr {
public:
    Bstr() = default;
    explicit Bstr(std::u16string_view text);
    Bstr(const Bstr&) = delete;
    Bstr& operator=(const Bstr&) = delete;
    ~Bstr();

    [[nodiscard]] BSTR Get() const noexcept { return m_text; }
    /// For an out argument; what the slot holds already is freed by the callee.
    [[nodiscard]] BSTR* Slot() noexcept { return &m_text; }
    [[nodiscard]] std::u16string Text() const;

private:
    BSTR m_text = nullptr;
};

}  // namespace zupm::tool

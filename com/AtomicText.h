/// A text that is read and replaced without the lock of the object that has it.
#pragma once

#include <memory>
#include <string>

#include "com/AtomicShared.h"

namespace zupm {

/// An immutable text that is replaced as a whole.
///
/// Threads   Every method may be called from any thread; a reader gets one of the texts that were set, whole.
/// Errors    std::bad_alloc from Set and from construction, with the old text kept.
class AtomicText {
public:
    explicit AtomicText(std::u16string text = {}) : m_text(std::make_shared<const std::u16string>(std::move(text))) {}

    /// The text as it is now; it stays valid for as long as the caller keeps it.
    [[nodiscard]] std::shared_ptr<const std::u16string> Get() const noexcept { return m_text.Load(); }
    void Set(std::u16string text) { m_text.Store(std::make_shared<const std::u16string>(std::move(text))); }

private:
    AtomicShared<const std::u16string> m_text;
};

}  // namespace zupm

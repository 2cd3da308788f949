#include "common/Macros.h"

#include <atomic>
#include <map>
#include <memory>
#include <mutex>
#include <utility>

namespace zupm {

namespace {

using MacroTable = std::map<std::u16string, std::u16string, std::less<>>;

// A plain pointer that is never freed at exit: another thread may still expand then. `g_any` spares the usual process,
// which registers nothing, the lock.
std::mutex g_macroLock;
constinit MacroTable* g_macros = nullptr;
constinit std::atomic<bool> g_any{false};

/// Copies `text` to the result, macro by macro. Must be called under the lock.
///
/// The place of the next closing mark is kept between openings, so that many openings before one closing mark do not
/// search the same stretch again and again.
std::u16string Expand(std::u16string_view text, std::u16string_view open, std::u16string_view close,
                      const MacroTable& macros)
{
    std::u16string result;
    std::size_t copied = 0;
    std::size_t closing = 0;
    for (std::size_t opening = text.find(open); opening != text.npos;) {
        const std::size_t name = opening + open.size();
        if (closing < name) {
            closing = text.find(close, name);
        }
        if (closing == text.npos) {
            break;
        }
        const auto macro = macros.find(text.substr(name, closing - name));
        std::size_t next = name;
        if (macro != macros.end()) {
            result.append(text, copied, opening - copied).append(macro->second);
            copied = next = closing + close.size();
        }
        opening = text.find(open, next);
    }
    return result.append(text, copied);
}

}  // namespace

std::u16string cmnlib_ExpandMacro(std::u16string_view text, std::u16string_view open, std::u16string_view close,
                                  int& /*flags*/, std::u16string_view /*context*/)
{
    const bool mayHoldMacros = !open.empty() && !close.empty() && text.find(open) != text.npos;
    if (!mayHoldMacros || !g_any.load(std::memory_order_acquire)) {
        return std::u16string(text);
    }
    const std::lock_guard lock(g_macroLock);
    return g_macros == nullptr ? std::u16string(text) : Expand(text, open, close, *g_macros);
}

void RegisterMacro(std::u16string name, std::u16string value)
{
    const std::lock_guard lock(g_macroLock);
    if (g_macros == nullptr) {
        g_macros = std::make_unique<MacroTable>().release();
    }
    g_macros->insert_or_assign(std::move(name), std::move(value));
    g_any.store(true, std::memory_order_release);
}

void UnregisterAllMacros()
{
    const std::lock_guard lock(g_macroLock);
    g_any.store(false, std::memory_order_release);
    const std::unique_ptr<MacroTable> last(std::exchange(g_macros, nullptr));
}

}  // namespace zupm

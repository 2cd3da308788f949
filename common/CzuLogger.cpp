#include "common/CzuLogger.h"

#include <algorithm>
#include <array>
#include <memory>
#include <mutex>
#include <utility>

#include "common/LogSettings.h"
#include "common/TimeStamp.h"
#include "platform/LogOutput.h"
#include "text/Decimal.h"
#include "text/Utf.h"

namespace zupm {

namespace {

constexpr std::int32_t kLevelNotRead = -1;
constexpr std::int32_t kLevelOff = 0;
/// Room for any path that the system would open.
constexpr std::size_t kFileCapacity = 4096;

// A plain pointer owns the sink. It is not freed at exit, because another thread may still log then. The settings from
// the environment are kept in static storage, so a module that is unloaded leaks nothing.
std::mutex g_logLock;
constinit CzuLogger::Sink* g_sink = nullptr;
constinit std::int32_t g_level = kLevelNotRead;
constinit std::array<char, kFileCapacity> g_file{};

bool IsControl(char16_t unit)
{
    return unit < 0x20 || (unit >= 0x7F && unit < 0xA0);
}

/// The text with its control characters made visible, so that no message can pass for two.
std::u16string OneLine(std::u16string_view text)
{
    constexpr std::u16string_view kDigits = u"0123456789ABCDEF";
    std::u16string out;
    out.reserve(text.size());
    for (const char16_t unit : text) {
        if (IsControl(unit)) {
            out.append(u"\\x").append(1, kDigits[unit >> 4]).append(1, kDigits[unit & 0xF]);
        } else {
            out.push_back(unit);
        }
    }
    return out;
}

/// A value in another form is reported once, because nobody would see why nothing is logged.
void ReportRefusedValue(const std::string& value)
{
    const std::u16string line = u"zuPolicyManager: ZUPOLICY_LOG is not <level>[:<file>], so nothing is logged: " +
                                OneLine(ToUtf16Lossy(value)) + u"\n";
    AppendLogLine("", ToUtf8Lossy(line));
}

std::int32_t ReadEnvironment()
{
    const std::string variable = TrustedEnvironmentVariable("ZUPOLICY_LOG").value_or(std::string());
    const std::optional<LogSettings> settings = ParseLogSettings(variable);
    if (!settings) {
        ReportRefusedValue(variable);
        return kLevelOff;
    }
    if (settings->file.size() >= g_file.size()) {
        return kLevelOff;
    }
    std::ranges::copy(settings->file, g_file.begin());
    return settings->level;
}

/// Whether the environment asks for messages of that level. Must be called under the lock.
bool IsWanted(std::int32_t level)
{
    if (g_level == kLevelNotRead) {
        g_level = ReadEnvironment();
    }
    return g_level != kLevelOff && level <= g_level;
}

void WriteLine(const LogMessage& message)
{
    std::u16string line = cmnblib_CurrentTimeToGMTTimeStamp();
    line.append(u" ").append(FormatSigned(message.level));
    line.append(u" ").append(FormatUnsigned(message.subsystem));
    line.append(u" ").append(OneLine(message.text)).append(u"\n");
    AppendLogLine(g_file.data(), ToUtf8Lossy(line));
}

}  // namespace

void CzuLogger::Add(std::uint32_t subsystem, std::int32_t level, std::u16string_view format,
                    std::span<const LogArgument> arguments) noexcept
{
    try {
        const std::lock_guard lock(g_logLock);
        if (g_sink == nullptr && !IsWanted(level)) {
            return;
        }
        const std::u16string text = Format(format, arguments);
        const LogMessage message{subsystem, level, text};
        if (g_sink != nullptr) {
            (*g_sink)(message);
        } else {
            WriteLine(message);
        }
    } catch (...) {
        // A log line is never worth the operation that wanted to write it.
        return;
    }
}

void CzuLogger::SetSink(Sink sink)
{
    std::unique_ptr<Sink> next = sink ? std::make_unique<Sink>(std::move(sink)) : nullptr;
    const std::lock_guard lock(g_logLock);
    // Whatever the old sink holds is freed after the lock is left.
    next.reset(std::exchange(g_sink, next.release()));
}

}  // namespace zupm

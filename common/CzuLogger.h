/// The agent's log, as the component writes to it.
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <variant>

namespace zupm {

/// How much a message matters: the component uses these three.
enum _zuimcomn_LogLevel : std::int32_t {
    kLogException = 1,  ///< an exception was caught at an operation's outermost level
    kLogFailure = 7,    ///< a document could not be read or parsed
    kLogDuplicate = 8,  ///< a duplicate key was skipped while indexing
};

/// One argument of a log format.
using LogArgument = std::variant<std::int64_t, std::uint64_t, std::u16string_view>;

/// One message on its way to the log; the text lives for the call only.
struct LogMessage {
    std::uint32_t subsystem;
    std::int32_t level;
    std::u16string_view text;
};

/// The process-wide log.
///
/// Threads   Any thread may log at any time; the sink is called by one thread at a time.
/// Errors    Never throws: a message that cannot be formatted or written is dropped.
/// Output    The sink that the process set; without one, `ZUPOLICY_LOG=<level>[:<file>]` (read once; off when unset)
///           writes messages up to that level as one line each: time, level, subsystem, text. Control characters in the
///           text are written as \xNN, so one message stays one line. Without a file they go to standard error. A value
///           in another form is reported there once, with the first message, and nothing is logged.
class CzuLogger {
public:
    using Sink = std::function<void(const LogMessage&)>;

    /// Formats and logs. Knows %s, %d, %u, %x, %X with zero padding and width, and %%; the n-th directive
    /// takes the n-th argument; one without an argument of its kind stays unchanged. A negative 32-bit number shows
    /// its 32 bits as %u and %x.
    template <class... Arguments>
    static void AddMessageW(std::uint32_t subsystem, std::int32_t level, std::u16string_view format,
                            Arguments... arguments) noexcept
    {
        if constexpr (sizeof...(Arguments) == 0) {
            Add(subsystem, level, format, {});
        } else {
            const LogArgument list[] = {ArgumentOf(arguments)...};
            Add(subsystem, level, format, list);
        }
    }

    /// Replaces the sink; an empty one goes back to the environment's choice. Returns after a call of the old sink that
    /// is under way has finished. A sink must not log.
    static void SetSink(Sink sink);

    /// The text that a format and its arguments make.
    [[nodiscard]] static std::u16string Format(std::u16string_view format, std::span<const LogArgument> arguments);

private:
    template <class Value>
    static LogArgument ArgumentOf(const Value& value)
    {
        if constexpr (std::is_signed_v<Value>) {
            return static_cast<std::int64_t>(value);
        } else if constexpr (std::is_unsigned_v<Value>) {
            return static_cast<std::uint64_t>(value);
        } else {
            return std::u16string_view(value);
        }
    }

    static void Add(std::uint32_t subsystem, std::int32_t level, std::u16string_view format,
                    std::span<const LogArgument> arguments) noexcept;
};

}  // namespace zupm

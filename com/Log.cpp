#include "com/Log.h"

#include <new>
#include <string>

#include "com/ResourceModuleUse.h"
#include "common/Resources.h"

namespace zupm {

namespace {

constexpr std::uint32_t kPlatformErrorText = 147;
constexpr std::uint32_t kExceptionText = 149;

// A text of the resource module, which may be released at any time: without it the line still says what happened.
std::u16string FormatOf(std::uint32_t id, std::u16string_view fallback)
{
    const auto module = ResourceModuleUse::Current();
    std::u16string format = GetResString(module.get(), id);
    return format.empty() ? std::u16string(fallback) : format;
}

// Looking a format up allocates; memory may be what has just run out.
template <class... Arguments>
void LogWithText(std::uint32_t id, std::u16string_view fallback, Arguments... arguments) noexcept
{
    try {
        CzuLogger::AddMessageW(kLogSubsystem, kLogException, FormatOf(id, fallback), arguments...);
    } catch (...) {
        CzuLogger::AddMessageW(kLogSubsystem, kLogException, fallback, arguments...);
    }
}

}  // namespace

void LogException(std::u16string_view operation) noexcept
{
    LogWithText(kExceptionText, u"%s", operation);
}

void LogPlatformError(std::u16string_view operation, result::Code code, std::u16string_view description) noexcept
{
    const std::uint64_t bits = static_cast<std::uint32_t>(code);
    LogWithText(kPlatformErrorText, u"%s: 0x%08X: %s", operation, bits, description);
}

void LogFailure(std::u16string_view text) noexcept
{
    CzuLogger::AddMessageW(kLogSubsystem, kLogFailure, u"%s", text);
}

void LogParseFailure(std::u16string_view operation, std::int64_t line, std::int64_t column) noexcept
{
    CzuLogger::AddMessageW(kLogSubsystem, kLogFailure,
                           u"%s - XML parsing exception occurred - syntax error at line(%d), column(%d)", operation,
                           line, column);
    // Given: see docs/given-oddities.md, "initalize".
    CzuLogger::AddMessageW(kLogSubsystem, kLogFailure, u"%s - Initalize policy file failed", operation);
}

result::Code CodeOfCurrentException(std::u16string_view operation) noexcept
{
    try {
        throw;
    } catch (const std::bad_alloc&) {
        return result::OutOfMemory;
    } catch (...) {
        LogException(operation);
        return result::Unexpected;
    }
}

}  // namespace zupm

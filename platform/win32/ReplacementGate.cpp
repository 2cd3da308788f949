#include "platform/win32/ReplacementGate.h"

#include <algorithm>
#include <array>
#include <limits>
#include <string_view>

#include "platform/win32/OpenedFile.h"

namespace zupm::win32 {

namespace {

/// Puts a number's hexadecimal digits at `at` and returns the place after them.
template <class Number>
wchar_t* PutHex(wchar_t* at, Number number) noexcept
{
    constexpr std::wstring_view kDigits = L"0123456789abcdef";
    for (int bits = std::numeric_limits<Number>::digits - 4; bits >= 0; bits -= 4) {
        *at++ = kDigits[static_cast<std::size_t>(number >> bits) & 15U];
    }
    return at;
}

/// For editors of every user, in every session.
Handle OpenMutex(const FileIdentity& file) noexcept
{
    constexpr std::wstring_view kPrefix = L"Global\\zuPolicyManager.Replacing.";
    std::array<wchar_t, 80> name{};
    wchar_t* end = std::ranges::copy(kPrefix, name.data()).out;
    end = PutHex(end, file.volume);
    *end++ = L'.';
    PutHex(end, file.index);
    SECURITY_DESCRIPTOR everybody;
    InitializeSecurityDescriptor(&everybody, SECURITY_DESCRIPTOR_REVISION);
    SetSecurityDescriptorDacl(&everybody, TRUE, nullptr, FALSE);
    SECURITY_ATTRIBUTES attributes{sizeof(SECURITY_ATTRIBUTES), &everybody, FALSE};
    return Handle(CreateMutexExW(&attributes, name.data(), 0, SYNCHRONIZE | MUTEX_MODIFY_STATE));
}

}  // namespace

bool ReplacementGate::Enter(const FileIdentity& file, std::uint32_t milliseconds) noexcept
{
    if (IsEntered()) {
        return true;
    }
    Handle mutex = OpenMutex(file);
    if (mutex == nullptr) {
        return true;
    }
    const DWORD answer = WaitForSingleObject(mutex.get(), milliseconds);
    // A mutex whose owner's process ended is owned too.
    if (answer == WAIT_OBJECT_0 || answer == WAIT_ABANDONED) {
        m_mutex = std::move(mutex);
    }
    return answer != WAIT_TIMEOUT;
}

void ReplacementGate::Leave() noexcept
{
    if (IsEntered()) {
        ReleaseMutex(m_mutex.get());
        m_mutex = nullptr;
    }
}

}  // namespace zupm::win32

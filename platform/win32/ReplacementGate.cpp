#include "platform/win32/ReplacementGate.h"

#include <array>
#include <cstdio>

#include "platform/win32/OpenedFile.h"

namespace zupm::win32 {

namespace {

/// For editors of every user, in every session.
Handle OpenMutex(const FileIdentity& file) noexcept
{
    std::array<wchar_t, 80> name{};
    std::swprintf(name.data(), name.size(), L"Global\\zuPolicyManager.Replacing.%08lx.%016llx",
                  static_cast<unsigned long>(file.volume), static_cast<unsigned long long>(file.index));
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
    // One that ended with its owner's process is owned too.
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

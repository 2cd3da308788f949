#include "platform/win32/ReplacementGate.h"

#include <array>
#include <cstdio>

#include "platform/win32/OpenedFile.h"

namespace zupm::win32 {

namespace {

/// Many times what a move takes.
constexpr DWORD kLongestWaitAtGate = 100;

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

void ReplacementGate::Enter(const FileIdentity& file) noexcept
{
    if (IsEntered()) {
        return;
    }
    Handle mutex = OpenMutex(file);
    if (mutex == nullptr) {
        return;
    }
    const DWORD answer = WaitForSingleObject(mutex.get(), kLongestWaitAtGate);
    // One that ended with its owner's process is owned too.
    if (answer == WAIT_OBJECT_0 || answer == WAIT_ABANDONED) {
        m_mutex = std::move(mutex);
    }
}

void ReplacementGate::Leave() noexcept
{
    if (IsEntered()) {
        ReleaseMutex(m_mutex.get());
        m_mutex = nullptr;
    }
}

}  // namespace zupm::win32

#include "platform/HeldFile.h"

#include <new>
#include <utility>

#include "platform/win32/OpenedFile.h"

namespace zupm {

struct HeldFile::Handles {
    win32::OpenedFile file;
};

namespace {

template <class Work>
result::Code Guarded(const Work& work) noexcept
{
    try {
        return work();
    } catch (const std::bad_alloc&) {
        return result::OutOfMemory;
    } catch (...) {
        return result::InputOutputError;
    }
}

}  // namespace

HeldFile::HeldFile() noexcept = default;
HeldFile::~HeldFile() = default;
HeldFile::HeldFile(HeldFile&& other) noexcept = default;
HeldFile& HeldFile::operator=(HeldFile&& other) noexcept = default;

result::Code HeldFile::Open(std::u16string_view path) noexcept
{
    Close();
    return Guarded([&] {
        auto handles = std::make_unique<Handles>();
        const result::Code code = handles->file.Open(path);
        if (code >= 0) {
            m_handles = std::move(handles);
        }
        return code;
    });
}

void HeldFile::Close() noexcept
{
    m_handles = nullptr;
}

result::Code HeldFile::TryLock() noexcept
{
    return Guarded([&] { return m_handles->file.TryLock(); });
}

result::Code HeldFile::Read(std::string& bytes) noexcept
{
    bytes.clear();
    const result::Code code = Guarded([&] { return m_handles->file.Read(bytes); });
    if (code < 0) {
        bytes.clear();
    }
    return code;
}

result::Code HeldFile::CheckUnchanged(RepeatableBytes& expected) noexcept
{
    return Guarded([&] { return m_handles->file.CheckUnchanged(expected); });
}

result::Code HeldFile::RehearseReplace() noexcept
{
    return Guarded([&] { return m_handles->file.RehearseReplace(); });
}

// The move is written through and the folder flushed whichever durability is asked for.
result::Code HeldFile::Replace(ByteSource& bytes, RepeatableBytes* expected, Durability) noexcept
{
    return Guarded([&] { return m_handles->file.Replace(bytes, expected); });
}

}  // namespace zupm

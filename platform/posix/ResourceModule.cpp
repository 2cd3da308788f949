#include "platform/Modules.h"

#include <fcntl.h>

#include <ctime>
#include <map>
#include <mutex>
#include <new>
#include <utility>

#include "platform/Files.h"
#include "platform/posix/NativePath.h"
#include "platform/posix/SystemCalls.h"
#include "platform/posix/TextFields.h"
#include "text/Utf.h"

namespace zupm {

namespace {

using namespace native;

using Texts = std::map<std::uint32_t, std::u16string>;

class TextResourceModule final : public ResourceModule {
public:
    explicit TextResourceModule(Texts texts) noexcept : m_texts(std::move(texts)) {}

    [[nodiscard]] std::optional<std::u16string> FindString(std::uint32_t id) const override
    {
        const auto text = m_texts.find(id);
        return text == m_texts.end() ? std::nullopt : std::optional<std::u16string>(text->second);
    }

private:
    const Texts m_texts;
};

/// Adds the text of one line `number<TAB>text`; false when it is none, or when an earlier line has the number.
bool AddLine(std::string_view line, Texts& texts)
{
    if (line.find('\t') == line.npos || line.find_first_of(std::string_view("\0\r", 2)) != line.npos) {
        return false;
    }
    std::uint32_t id = 0;
    if (!ReadNumber(TakeUpTo(line, '\t'), 10, id)) {
        return false;
    }
    std::optional<std::u16string> text = ToUtf16(line);
    return text && texts.emplace(id, *std::move(text)).second;
}

/// What a file is known by: every change of its bytes changes its times, unless two changes meet in one tick.
struct Identity {
    dev_t device = 0;
    ino_t number = 0;
    off_t size = 0;
    timespec written{};
    timespec changed{};

    friend bool operator==(const Identity& left, const Identity& right) noexcept
    {
        const auto same = [](const timespec& one, const timespec& other) {
            return one.tv_sec == other.tv_sec && one.tv_nsec == other.tv_nsec;
        };
        return left.device == right.device && left.number == right.number && left.size == right.size &&
               same(left.written, right.written) && same(left.changed, right.changed);
    }
};

std::optional<Identity> IdentityOf(const std::string& path)
{
    struct stat status {};
    if (Calls().fstatat(AT_FDCWD, path.c_str(), &status, 0) != 0) {
        return std::nullopt;
    }
    return Identity{status.st_dev, status.st_ino, status.st_size, status.st_mtim, status.st_ctim};
}

/// Whether the next change of the bytes gets another time than the last one.
bool IsOld(const Identity& identity) noexcept
{
    constexpr time_t kSeconds = 2;
    timespec now{};
    return clock_gettime(CLOCK_REALTIME, &now) == 0 && identity.written.tv_sec + kSeconds < now.tv_sec;
}

/// The module that was loaded last. Every creation of an object may load the module again, and mostly it is the same.
struct LastModule {
    Identity identity;
    std::shared_ptr<const ResourceModule> module;
};

// A plain pointer: a thread that still runs at the end of the process may load a module then.
constinit std::mutex g_lastLock;
constinit LastModule* g_last = nullptr;

void Keep(std::unique_ptr<LastModule> next) noexcept
{
    const std::lock_guard lock(g_lastLock);
    next.reset(std::exchange(g_last, next.release()));
}

const struct DropAtTheEnd {
    DropAtTheEnd() noexcept = default;
    DropAtTheEnd(const DropAtTheEnd&) = delete;
    DropAtTheEnd& operator=(const DropAtTheEnd&) = delete;
    ~DropAtTheEnd() { Keep(nullptr); }
} g_dropAtTheEnd;

std::shared_ptr<const ResourceModule> KeptModule(const Identity& identity)
{
    const std::lock_guard lock(g_lastLock);
    return g_last != nullptr && g_last->identity == identity ? g_last->module : nullptr;
}

std::shared_ptr<const ResourceModule> ReadModule(std::u16string_view fullPath)
{
    std::string bytes;
    const result::Code read = ReadWholeFile(fullPath, bytes);
    if (read == result::OutOfMemory) {
        throw std::bad_alloc();
    }
    if (read < 0) {
        return nullptr;
    }
    Texts texts;
    for (std::string_view rest = bytes; !rest.empty();) {
        if (!AddLine(TakeUpTo(rest, '\n'), texts)) {
            return nullptr;
        }
    }
    return texts.empty() ? nullptr : std::make_shared<const TextResourceModule>(std::move(texts));
}

}  // namespace

std::shared_ptr<const ResourceModule> LoadResourceModule(std::u16string_view fullPath)
{
    const std::optional<std::string> path = fullPath.starts_with(u'/') ? ToNativePath(fullPath) : std::nullopt;
    const std::optional<Identity> identity = path ? IdentityOf(*path) : std::nullopt;
    if (!identity) {
        return nullptr;
    }
    if (auto module = KeptModule(*identity)) {
        return module;
    }
    auto module = ReadModule(fullPath);
    if (module != nullptr && IsOld(*identity) && IdentityOf(*path) == identity) {
        Keep(std::make_unique<LastModule>(LastModule{*identity, module}));
    }
    return module;
}

std::u16string_view PackageFolder() noexcept
{
    return u"zuPolicyManager";
}

std::u16string OwnModuleFolder()
{
    std::u16string path = OwnModulePath();
    const std::size_t separator = path.rfind(u'/');
    path.resize(separator == path.npos ? 0 : separator);
    return path;
}

}  // namespace zupm

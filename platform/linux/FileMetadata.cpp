#include "platform/posix/FileMetadata.h"

#include <algorithm>
#include <cerrno>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/posix/FileErrors.h"
#include "platform/posix/SystemCalls.h"

namespace zupm::native {

namespace {

/// The system's own limit for one attribute and for the list of names.
constexpr std::size_t kLargestAttribute = 65536;
constexpr const char* kAccessList = "system.posix_acl_access";

/// Attributes that vouch for the old bytes: on the new ones they would be wrong.
constexpr std::string_view kTiedToTheBytes[] = {"security.evm", "security.ima"};

constexpr mode_t kModeBits = 07777;

bool IsUnsupported(int error)
{
    return error == EOPNOTSUPP || error == ENOSYS;
}

result::Code CopyOwner(const struct stat& status, int to)
{
    struct stat own {};
    if (Calls().fstat(to, &own) != 0) {
        return LastError();
    }
    if (own.st_uid == status.st_uid && own.st_gid == status.st_gid) {
        return result::Success;
    }
    if (Retry([&] { return Calls().fchown(to, status.st_uid, status.st_gid); }) == 0) {
        return result::Success;
    }
    return errno == EPERM ? result::OwnerNotKept : LastError();
}

result::Code ListAttributes(int file, std::vector<std::string>& names)
{
    std::string list(kLargestAttribute, '\0');
    const ssize_t length = Calls().flistxattr(file, list.data(), list.size());
    if (length < 0) {
        return IsUnsupported(errno) ? result::Success : LastError();
    }
    list.resize(static_cast<std::size_t>(length));
    for (std::size_t at = 0; at < list.size(); at += names.back().size() + 1) {
        names.emplace_back(list.c_str() + at);
    }
    return result::Success;
}

/// The attribute's value; nothing, with errno, when it cannot be read.
std::optional<std::string> ReadAttribute(int file, const std::string& name)
{
    std::string value(kLargestAttribute, '\0');
    const ssize_t length = Calls().fgetxattr(file, name.c_str(), value.data(), value.size());
    if (length < 0) {
        return std::nullopt;
    }
    value.resize(static_cast<std::size_t>(length));
    return value;
}

result::Code CopyAttribute(int from, int to, const std::string& name)
{
    const std::optional<std::string> value = ReadAttribute(from, name);
    if (!value) {
        return errno == ENODATA || IsUnsupported(errno) ? result::Success : LastError();
    }
    // A security label is often on the new file already, and setting even the same one takes a right of its own.
    if (ReadAttribute(to, name) == value) {
        return result::Success;
    }
    const int set = Calls().fsetxattr(to, name.c_str(), value->data(), value->size(), 0);
    return set == 0 || IsUnsupported(errno) ? result::Success : LastError();
}

/// Takes away the access list that a new file inherits from its folder.
result::Code RemoveAccessList(int file)
{
    const int removed = Calls().fremovexattr(file, kAccessList);
    return removed == 0 || errno == ENODATA || IsUnsupported(errno) ? result::Success : LastError();
}

result::Code CopyAttributes(int from, int to)
{
    std::vector<std::string> names;
    result::Code code = ListAttributes(from, names);
    if (code == result::Success && std::find(names.begin(), names.end(), kAccessList) == names.end()) {
        code = RemoveAccessList(to);
    }
    for (const std::string& name : names) {
        if (code != result::Success) {
            break;
        }
        if (std::ranges::find(kTiedToTheBytes, name) == std::end(kTiedToTheBytes)) {
            code = CopyAttribute(from, to, name);
        }
    }
    return code;
}

}  // namespace

result::Code CopyMetadata(int from, const struct stat& status, int to)
{
    // The mode comes last: changing the owner removes special bits, and until then nobody else may open the file.
    if (const result::Code code = CopyOwner(status, to); code != result::Success) {
        return code;
    }
    if (const result::Code code = CopyAttributes(from, to); code != result::Success) {
        return code;
    }
    return Retry([&] { return Calls().fchmod(to, status.st_mode & kModeBits); }) == 0 ? result::Success : LastError();
}

}  // namespace zupm::native

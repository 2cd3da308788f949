#include "platform/posix/AtomicReplace.h"

#include <fcntl.h>

#include <utility>

#include "platform/posix/DirectWrite.h"
#include "platform/posix/NativePath.h"

namespace zupm::native {

result::Code ReplaceFile(std::u16string_view path, std::string_view bytes, Durability durability)
{
    const std::optional<std::string> target = ToNativePath(path);
    if (!target) {
        return result::InvalidName;
    }
    // Opened by the system first: some links, such as those of open files, lead to no name at all.
    if (FileHandle special = OpenSpecialFile(*target)) {
        return WriteSpecialFile(std::move(special), bytes);
    }
    FilePlace place;
    result::Code code = OpenPlace(*target, O_WRONLY, place);
    if (code == result::Success) {
        code = Replacement(place, bytes, durability).Run({});
    }
    // A caller who names the file by its path gets the system's code alone.
    return code == result::OwnerNotKept ? result::AccessDenied : code;
}

}  // namespace zupm::native

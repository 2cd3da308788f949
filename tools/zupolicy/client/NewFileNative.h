/// A file that gets its name when it is complete.
#pragma once

#include <sys/types.h>

#include <string>

#include "tools/zupolicy/client/NativeDescriptor.h"

namespace zupm::tool {

/// A new file in a folder, under a name that nobody can guess. It goes again unless it gets another name.
///
/// Errors  In errno. A file that could not be made is not open.
class NewFile {
public:
    /// `folder` is open as long as the object lives.
    NewFile(int folder, mode_t mode);
    ~NewFile();
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;

    [[nodiscard]] bool IsOpen() const noexcept { return m_file.IsOpen(); }
    [[nodiscard]] int Get() const noexcept { return m_file.Get(); }
    /// Takes the place of what has the name.
    [[nodiscard]] bool Replace(const std::string& name);
    /// Gets a name that is free; fails with EEXIST when it is taken, also by a link.
    [[nodiscard]] bool TakeFreeName(const std::string& name);

private:
    int m_folder;
    std::string m_name;
    OwnedDescriptor m_file;
    bool m_hasOtherName = false;
};

}  // namespace zupm::tool

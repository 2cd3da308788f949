#include "bench/PlainFiles.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>

#include "bench/Demand.h"

namespace zupm::bench {

std::size_t SizeOf(const std::string& path)
{
    return static_cast<std::size_t>(std::filesystem::file_size(path));
}

std::string BytesOf(const std::string& path)
{
    std::string bytes(SizeOf(path), '\0');
    std::ifstream file(path, std::ios::binary);
    file.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    Demand(static_cast<bool>(file), "reading a file");
    return bytes;
}

void ReplaceFlushed(const std::string& target, const std::string& bytes)
{
    const std::string temporary = target + ".temporary";
    const int file = open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    Demand(file >= 0, "creating a file");
    for (std::size_t done = 0; done < bytes.size();) {
        const ssize_t written = write(file, bytes.data() + done, bytes.size() - done);
        Demand(written > 0, "writing a file");
        done += static_cast<std::size_t>(written);
    }
    Demand(fsync(file) == 0 && close(file) == 0, "flushing a file");
    Demand(std::rename(temporary.c_str(), target.c_str()) == 0, "renaming a file");
}

}  // namespace zupm::bench

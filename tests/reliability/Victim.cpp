#include "Victim.h"

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "PolicyVersions.h"
#include "tests/support/TempFolder.h"

namespace zupm::test {

namespace {

/// Truncates the file and fills it again, piece by piece.
HRESULT Overwrite(PolicyFileClient& from, const std::u16string& path)
{
    constexpr std::size_t kPiece = 64;
    const std::u16string copy = path + u".copy";
    if (const HRESULT code = from.Write(copy); code != 0) {
        return code;
    }
    const std::string whole = ReadBytes(copy);
    std::string_view bytes = whole;
    std::ofstream file(std::filesystem::path(path), std::ios::binary | std::ios::trunc);
    for (; !bytes.empty(); bytes.remove_prefix(std::min(kPiece, bytes.size()))) {
        const std::string_view piece = bytes.substr(0, kPiece);
        file.write(piece.data(), static_cast<std::streamsize>(piece.size())).flush();
    }
    return file ? S_OK : E_FAIL;
}

}  // namespace

void WriteForEver(PolicyFileClient& file, const std::u16string& path, WayOfWriting way, KillProgress& progress)
{
    for (;;) {
        const std::uint32_t version = progress.completed + 1;
        progress.begun = version;
        progress.failure = way == WayOfWriting::WriteFile ? file.Write(path) : Overwrite(file, path);
        if (progress.failure != 0) {
            return;
        }
        progress.completed = version;
        PolicyVersions::Edit(file, version + 1);
    }
}

}  // namespace zupm::test

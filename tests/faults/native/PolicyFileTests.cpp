// Loading and writing the policy file: a regular file, one through a link, a new one, a pipe.
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <utility>

#include "tests/faults/native/FailingSystemTest.h"

namespace zupm::test {

namespace {

constexpr const char16_t* kLink = u"link";
constexpr mode_t kMode = 0640;

HRESULT Load(World& world)
{
    return world.file.Object()->InitializeFile(world.path.Get(), 0);
}

/// A load that failed leaves nothing loaded; the next one works.
void IsLoadedOrNot(World& world, const Sight& before, const Outcome& outcome)
{
    EXPECT_EQ(world.OfFolder().files, before.files);
    ExpectCodeOfTheError(outcome);
    if (outcome.error != EINTR) {
        // Everything was read before the file is closed.
        EXPECT_EQ(outcome.code == S_OK, outcome.failedCall.empty() || outcome.failedCall == "close");
    }
    if (outcome.code != S_OK) {
        EXPECT_EQ(world.file.FindPolicy(kProduct), result::NotInitialised);
        EXPECT_EQ(Load(world), S_OK);
    }
    EXPECT_EQ(world.OfAll(), before);
}

// --- writing ---------------------------------------------------------------------------------------------------------

HRESULT WriteTo(World& world, const Bstr& path)
{
    return world.file.Object()->WriteFile(path.Get(), 0);
}

/// What the document's bytes are.
std::string DocumentOf(const World& world)
{
    return Utf8(world.file.Buffer().value_or(std::u16string()));
}

/// The file has its old bytes (none: it was not there) or the document's. Those with a failure only when it was the
/// folder's flush that failed.
void ExpectOldOrNew(World& world, const std::u16string& path, const std::string& old, const Outcome& outcome)
{
    const std::string now = std::filesystem::exists(path) ? ReadBytes(path) : std::string();
    if (outcome.code == S_OK || now != old) {
        EXPECT_EQ(now, DocumentOf(world));
    }
    if (outcome.code != S_OK && now != old) {
        EXPECT_EQ(outcome.failedCall, "fsync");
    }
    ExpectCodeOfTheError(outcome);
    ExpectNoTemporary(world, outcome);
}

std::string BytesOf(const Sight& folder, std::string_view name)
{
    for (const std::string& file : folder.files) {
        if (file.starts_with(std::string(name) + ": ")) {
            return file.substr(name.size() + 2);
        }
    }
    return {};
}

void IsOldOrNew(World& world, const Sight& before, const Outcome& outcome)
{
    ExpectOldOrNew(world, world.path.Text(), BytesOf(before, "policy.xml"), outcome);
    ExpectNothingLost(world, before);
}

void IsNewOrMissing(World& world, const Sight& before, const Outcome& outcome)
{
    ExpectOldOrNew(world, world.newPath.Text(), {}, outcome);
    EXPECT_EQ(BytesOf(world.OfFolder(), "policy.xml"), BytesOf(before, "policy.xml"));
    ExpectNothingLost(world, before);
}

void MakeLink(World& world)
{
    const std::string file = NativePath(world, u"policy.xml");
    ASSERT_EQ(::chmod(file.c_str(), kMode), 0);
    ASSERT_EQ(::symlink("policy.xml", NativePath(world, kLink).c_str()), 0);
    static_cast<void>(::setxattr(file.c_str(), "user.zupm", "x", 1, 0));  // where the file system has any
}

mode_t ModeOf(const std::string& path)
{
    struct stat status {};
    EXPECT_EQ(::stat(path.c_str(), &status), 0);
    return status.st_mode & 07777;
}

/// The write succeeds only if none of the calls failed that it needs; a signal fails none that waits.
void ExpectCodeOfTheCall(const Outcome& outcome)
{
    const std::string& call = outcome.failedCall;
    if (outcome.error != EINTR) {
        for (const std::string_view needed : {"getrandom", "write", "flistxattr", "fchmod", "fsync", "renameat"}) {
            EXPECT_FALSE(outcome.code == S_OK && call == needed) << call;
        }
    } else if (call != "fstat" && call != "readlinkat" && !call.ends_with("xattr")) {
        EXPECT_EQ(outcome.code, S_OK) << call;
    }
}

void IsOldOrNewAndTheLinkALink(World& world, const Sight& before, const Outcome& outcome)
{
    EXPECT_TRUE(std::filesystem::is_symlink(NativePath(world, kLink)));
    EXPECT_EQ(ModeOf(NativePath(world, u"policy.xml")), kMode);
    ExpectCodeOfTheCall(outcome);
    IsOldOrNew(world, before, outcome);
}

// --- a pipe ----------------------------------------------------------------------------------------------------------

int g_reader = -1;

void MakePipe(World& world)
{
    // Outside of the world's folder, whose files the checks read.
    const std::string path = NativePath(world, u"../") + "zupm-pipe-" + std::to_string(::getpid());
    ::unlink(path.c_str());
    ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
    g_reader = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    ASSERT_GE(g_reader, 0);
    world.newPath = Bstr(Utf16(path));
}

std::string TakeFromPipe(const World& world)
{
    std::string bytes(65536, '\0');
    const ssize_t count = ::read(g_reader, bytes.data(), bytes.size());
    bytes.resize(count < 0 ? 0 : static_cast<std::size_t>(count));
    ::close(std::exchange(g_reader, -1));
    std::filesystem::remove(world.newPath.Text());
    return bytes;
}

/// What went into a pipe is gone; a failure says that it may not have been everything.
void IsInThePipeOrReported(World& world, const Sight& before, const Outcome& outcome)
{
    const std::string got = TakeFromPipe(world);
    EXPECT_TRUE(DocumentOf(world).starts_with(got));
    EXPECT_TRUE(outcome.code != S_OK || got == DocumentOf(world));
    if ((outcome.failedCall == "openat" || outcome.failedCall == "fstat") && outcome.code == result::NotSupported) {
        EXPECT_EQ(got, "") << "not known to be a pipe, and no file that could be replaced";
    } else {
        ExpectCodeOfTheError(outcome);
    }
    EXPECT_EQ(world.OfFolder().files, before.files);
    ExpectNothingLost(world, before);
}

// --- editing in place ------------------------------------------------------------------------------------------------

/// A whole edit: the first code that is no success.
HRESULT EditInPlace(World& world)
{
    const auto edit = ComPtr<IPolicyFile>(world.file.Object()).Query<IPolicyFileEdit>();
    HRESULT code = edit->OpenForEdit(world.path.Get(), 0);
    if (code == S_OK) {
        code = edit->RehearseCommit(0);
    }
    if (code == S_OK) {
        code = edit->CommitEdit(0);
    }
    EXPECT_EQ(edit->EndEdit(), S_OK);
    return code;
}

/// The same without an edit.
HRESULT CompareAndWrite(World& world)
{
    const auto contents = ComPtr<IPolicyFile>(world.file.Object()).Query<IPolicyFileContents>();
    LONG changed = 0;
    const HRESULT code = contents->get_HasChangedOnDisk(&changed);
    EXPECT_EQ(changed, 0);
    return code == S_OK ? contents->WriteIfUnchanged(0) : code;
}

/// The file has its old bytes or the document's, and says which; it can be loaded again.
void IsOldOrNewAndCanBeLoaded(World& world, const Sight& before, const Outcome& outcome)
{
    const bool isWritten = outcome.code == S_OK || outcome.code == result::WrittenNotFlushed;
    const std::string now = ReadBytes(world.path.Text());
    EXPECT_EQ(now, isWritten ? DocumentOf(world) : BytesOf(before, "policy.xml"));
    if (outcome.code == result::WrittenNotFlushed) {
        EXPECT_EQ(outcome.failedCall, "fsync");
    } else if (outcome.code == result::FileLocked) {
        EXPECT_EQ(outcome.failedCall, "setlock");
    } else {
        ExpectCodeOfTheError(outcome);
    }
    ExpectNoTemporary(world, outcome);
    EXPECT_EQ(Load(world), S_OK);
    ExpectNothingLost(world, before);
}

const FileOperation kOperations[] = {
    {.name = "InitializeFile", .run = Load, .check = IsLoadedOrNot, .errors = 7},
    {.name = "WriteFile_OverAnOldOne",
     .run = [](World& world) { return WriteTo(world, world.path); },
     .check = IsOldOrNew},
    {.name = "WriteFile_ToANewOne",
     .run = [](World& world) { return WriteTo(world, world.newPath); },
     .check = IsNewOrMissing},
    {.name = "WriteFile_ThroughALink",
     .run = [](World& world) { return WriteTo(world, Bstr(world.folder.Path(kLink))); },
     .check = IsOldOrNewAndTheLinkALink,
     .prepare = MakeLink,
     .errors = 7},
    {.name = "EditInPlace", .run = EditInPlace, .check = IsOldOrNewAndCanBeLoaded},
    {.name = "CompareAndWrite", .run = CompareAndWrite, .check = IsOldOrNewAndCanBeLoaded},
    {.name = "WriteFile_IntoAPipe",
     .run = [](World& world) { return WriteTo(world, world.newPath); },
     .check = IsInThePipeOrReported,
     .prepare = MakePipe},
};

}  // namespace

INSTANTIATE_TEST_SUITE_P(PolicyFile, FailingSystem, testing::ValuesIn(kOperations), NameOf);

TEST(FullDevice, WriteFile_SaysThatTheDiskIsFullAndKeepsTheDocument)
{
    const TempFolder folder;
    World world(folder);
    EXPECT_EQ(world.file.Write(u"/dev/full"), result::DiskFull);
    EXPECT_EQ(world.file.FindPolicy(kProduct), 0);
    EXPECT_EQ(world.file.Write(world.newPath.Text()), 0);
    EXPECT_EQ(ReadBytes(world.newPath.Text()), DocumentOf(world));
}

}  // namespace zupm::test

// Processes killed while they write.
#include <gtest/gtest.h>

#include <chrono>
#include <iostream>
#include <optional>
#include <random>
#include <thread>

#include "KillTally.h"
#include "PolicyVersions.h"
#include "VictimProcess.h"
#include "tests/support/Effort.h"
#include "tests/support/FixedClock.h"
#include "tests/support/TempFolder.h"

namespace zupm::test {

namespace {

using Clock = std::chrono::steady_clock;

/// A Windows victim has to be started each time, a native one is a fork.
constexpr int kKills = sizeof(wchar_t) == 2 ? 20 : 200;
constexpr int kKillsPerReport = 250;
constexpr const char16_t* kName = u"policy.xml";

/// Whether a name is one that the component gives to temporary files: whoever cleans up after a killed writer needs it.
bool IsNameOfATemporary(const std::string& name)
{
    const std::string_view begin = sizeof(wchar_t) == 2 ? "~" : ".zu";
    constexpr std::string_view kEnd = ".tmp";
    constexpr std::size_t kDigits = 32;
    return name.size() == begin.size() + kDigits + kEnd.size() && name.starts_with(begin) && name.ends_with(kEnd) &&
           name.find_first_not_of("0123456789abcdef", begin.size()) == begin.size() + kDigits;
}

/// Starts a victim on one file, kills it at a random moment and checks what it left, again and again.
class Kill : public ::testing::Test {
public:
    Kill()
    {
        m_folder.Write(kName, m_versions.Bytes(0));
        m_random.seed(static_cast<unsigned>(Effort("ZUPM_SEED", 1)));
        MeasureAWrite();
    }

    /// The moment is random over the time that a WriteFile takes, from the beginning of the first one on; twice that
    /// for overwriting, which follows a WriteFile.
    void KillOne(WayOfWriting way)
    {
        PolicyVersions::Edit(m_file, Progress().completed + 1);
        m_victim.Start(m_file, m_path, way);
        const Clock::time_point patience = Clock::now() + std::chrono::minutes(2);
        while (Progress().begun == Progress().completed && Progress().failure == 0 && Clock::now() < patience) {
            std::this_thread::sleep_for(std::chrono::microseconds(50));
        }
        std::uniform_int_distribution<Clock::rep> moment(0,
                                                         m_write.count() * (way == WayOfWriting::Overwriting ? 2 : 1));
        std::this_thread::sleep_for(Clock::duration(moment(m_random)));
        m_victim.Kill();
    }

    /// The stage that it died at; nothing when the file is neither the old nor the new version.
    std::optional<KillStage> Judge()
    {
        const std::string bytes = m_folder.Read(kName);
        const std::uint32_t begun = Progress().begun;
        const std::uint32_t completed = Progress().completed;
        if (begun == completed) {
            return bytes == m_versions.Bytes(begun) ? std::optional(KillStage::BetweenCalls) : std::nullopt;
        }
        if (bytes == m_versions.Bytes(begun)) {
            return KillStage::Replaced;
        }
        if (bytes != m_versions.Bytes(completed)) {
            return std::nullopt;
        }
        const std::vector<std::filesystem::path> temporaries = Temporaries();
        if (temporaries.empty()) {
            return KillStage::BeforeTemporary;
        }
        const bool isWhole = file_size(temporaries.front()) == m_versions.Bytes(begun).size();
        return isWhole ? KillStage::TemporaryComplete : KillStage::WritingTemporary;
    }

    /// Everything in the folder but the file itself.
    [[nodiscard]] std::vector<std::filesystem::path> Temporaries() const
    {
        std::vector<std::filesystem::path> found;
        for (const std::filesystem::directory_entry& entry : std::filesystem::directory_iterator(m_folder.Folder())) {
            if (entry.path().filename() != kName) {
                found.push_back(entry.path());
            }
        }
        return found;
    }

    /// Leaves what the next victim starts from: the file, which loads, and no temporary.
    void GoOnFrom(KillStage stage)
    {
        for (const std::filesystem::path& temporary : Temporaries()) {
            std::filesystem::remove(temporary);
        }
        const std::uint32_t version = stage == KillStage::Replaced ? Progress().begun : Progress().completed;
        Progress().begun = version;
        Progress().completed = version;
        ASSERT_TRUE(PolicyVersions::Load(m_file, m_path, version));
    }

    [[nodiscard]] KillProgress& Progress() { return m_victim.Progress(); }

    FixedClock m_clock;
    PolicyVersions m_versions;
    TempFolder m_folder;
    std::u16string m_path = m_folder.Path(kName);
    PolicyFileClient m_file;
    VictimProcess m_victim;

private:
    void MeasureAWrite()
    {
        constexpr std::uint32_t kRounds = PolicyVersions::kDistinct;
        ASSERT_TRUE(PolicyVersions::Load(m_file, m_path, 0));
        Clock::duration total{};
        for (std::uint32_t version = 1; version <= kRounds; ++version) {
            PolicyVersions::Edit(m_file, version);
            const Clock::time_point start = Clock::now();
            ASSERT_EQ(m_file.Write(m_path), 0);
            total += Clock::now() - start;
        }
        m_write = total / kRounds;
    }

    Clock::duration m_write{};
    std::mt19937 m_random;
};

}  // namespace

TEST_F(Kill, InsideWriteFile_LeavesTheOldOrTheNewFileWhole)
{
    const int wanted = Effort("ZUPM_KILLS", kKills);
    const Clock::time_point start = Clock::now();
    KillTally tally;
    while (tally.Inside() < wanted) {
        KillOne(WayOfWriting::WriteFile);
        const std::optional<KillStage> stage = Judge();
        ASSERT_TRUE(stage) << "torn, after " << tally << "; version " << Progress().begun;
        const std::vector<std::filesystem::path> left = Temporaries();
        ASSERT_LE(left.size(), 1U);
        ASSERT_TRUE(left.empty() || IsNameOfATemporary(left.front().filename().string())) << left.front();
        tally.Count(*stage);
        if (*stage != KillStage::BetweenCalls && tally.Inside() % kKillsPerReport == 0) {
            std::cout << tally << std::endl;
        }
        GoOnFrom(*stage);
        ASSERT_FALSE(HasFatalFailure());
    }
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(Clock::now() - start);
    std::cout << tally << "; torn: 0; " << seconds.count() << " s\n";
}

TEST_F(Kill, OfAWriterThatOverwrites_IsNoticedAsATornFile)
{
    constexpr int kMostKills = 1000;
    for (int kill = 0; kill < kMostKills; ++kill) {
        KillOne(WayOfWriting::Overwriting);
        const std::optional<KillStage> stage = Judge();
        if (!stage) {
            EXPECT_FALSE(PolicyVersions::Load(m_file, m_path, Progress().begun));
            EXPECT_FALSE(PolicyVersions::Load(m_file, m_path, Progress().completed));
            return;
        }
        GoOnFrom(*stage);
    }
    FAIL() << "no kill in " << kMostKills << " tore the file";
}

}  // namespace zupm::test

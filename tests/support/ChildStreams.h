/// The files that the streams of a running program go through.
#pragma once

#include <atomic>
#include <filesystem>
#include <string>

#include "tests/support/TempFolder.h"

namespace zupm::test {

/// Two files of one run; nothing of them stays.
class ChildStreams {
public:
    explicit ChildStreams(const std::filesystem::path& folder)
    {
        static std::atomic<int> runs = 0;
        const std::string number = std::to_string(++runs);
        m_out = folder / (".out" + number);
        m_messages = folder / (".messages" + number);
    }
    ~ChildStreams()
    {
        std::error_code ignored;
        std::filesystem::remove(m_out, ignored);
        std::filesystem::remove(m_messages, ignored);
    }
    ChildStreams(const ChildStreams&) = delete;
    ChildStreams& operator=(const ChildStreams&) = delete;

    [[nodiscard]] const std::filesystem::path& Out() const { return m_out; }
    [[nodiscard]] const std::filesystem::path& Messages() const { return m_messages; }

    /// What was written into one of them; empty when it was not even created.
    [[nodiscard]] static std::string TextOf(const std::filesystem::path& stream)
    {
        return std::filesystem::exists(stream) ? ReadBytes(stream.u16string()) : std::string();
    }

private:
    std::filesystem::path m_out;
    std::filesystem::path m_messages;
};

}  // namespace zupm::test

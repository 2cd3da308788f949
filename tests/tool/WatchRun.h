/// A run of `watch` beside the test.
#pragma once

#include <chrono>
#include <functional>
#include <future>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#include "ToolTest.h"

namespace zupm::test {

/// Starts the tool, and waits until it watches.
class WatchRun {
public:
    WatchRun(const TempFolder& folder, std::vector<std::string> arguments, std::string outDevice = {})
        : m_folder(folder)
    {
        // However a test fails, the run ends.
        arguments.insert(arguments.begin(), "watch");
        arguments.insert(arguments.end(), {"--timeout", "60"});
        m_run = std::async(std::launch::async, [&folder, arguments, outDevice] {
            return RunTool({folder.Folder(), outDevice}, arguments);
        });
        WaitForMessage("watching ");
    }

    void WaitForMessage(std::string_view text) const { WaitFor(".messages", text); }
    void WaitForOutput(std::string_view text) const { WaitFor(".out", text); }
    [[nodiscard]] ToolRun End() { return m_run.get(); }

private:
    /// Waits until a stream of the run has the text; the files of streams begin with these names.
    void WaitFor(std::string_view stream, std::string_view text) const
    {
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(50);
        while (!Has(stream, text)) {
            ASSERT_LT(std::chrono::steady_clock::now(), end) << "nothing in " << stream << " says: " << text;
            ASSERT_NE(m_run.wait_for(std::chrono::milliseconds(20)), std::future_status::ready) << text;
        }
    }
    [[nodiscard]] bool Has(std::string_view stream, std::string_view text) const
    {
        for (const std::string& name : m_folder.Names()) {
            try {
                if (name.starts_with(stream) &&
                    m_folder.Read(std::u16string(name.begin(), name.end())).find(text) != std::string::npos) {
                    return true;
                }
            } catch (const std::exception&) {
                continue;  // another run has just ended
            }
        }
        return false;
    }

    const TempFolder& m_folder;
    std::future<ToolRun> m_run;
};

}  // namespace zupm::test

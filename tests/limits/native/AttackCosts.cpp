#include "tests/limits/native/AttackCosts.h"

#include <sstream>
#include <stdexcept>
#include <string>

#include "tests/support/ChildProcess.h"
#include "tests/support/TempFolder.h"

namespace zupm::test {

namespace {

/// The attacked files, and what the counting tool writes about each process.
class Counting {
public:
    void Add(const Attack& attack, std::size_t size)
    {
        const std::string name = "in" + std::to_string(m_arguments.size()) + ".xml";
        m_folder.Write(std::u16string(name.begin(), name.end()), attack.file(size));
        m_arguments.emplace_back(attack.label);
        m_arguments.push_back((m_folder.Folder() / name).string());
    }

    /// Runs them all and returns the lines that the counter prints.
    [[nodiscard]] std::istringstream Run() const
    {
        // Only instructions: without the simulation of caches it takes a third of the time.
        std::vector<std::string> arguments{"--tool=cachegrind", "--cache-sim=no",
                                           "--cachegrind-out-file=" + (m_folder.Folder() / "count.%p").string(),
                                           ZUPM_COUNTER};
        arguments.insert(arguments.end(), m_arguments.begin(), m_arguments.end());
        const ChildRun child = RunChild({ZUPM_VALGRIND, m_folder.Folder(), {}}, arguments);
        if (child.exitCode != 0) {
            throw std::runtime_error("counting ended with " + std::to_string(child.exitCode) + ": " + child.messages);
        }
        return std::istringstream(child.out);
    }

    /// The instructions of the process in the counter's next line, and its code; 0 for one that did not end.
    [[nodiscard]] std::uint64_t Next(std::istringstream& lines, HRESULT& code) const
    {
        constexpr std::string_view kTotal = "\nsummary: ";
        std::string process;
        if (lines >> process >> code && process == "0") {
            return 0;
        }
        const std::string counted = m_folder.Read(u"count." + std::u16string(process.begin(), process.end()));
        const std::size_t place = counted.rfind(kTotal);
        if (!lines || place == std::string::npos) {
            throw std::runtime_error("process " + process + " was not counted");
        }
        return std::stoull(counted.substr(place + kTotal.size()));
    }

private:
    TempFolder m_folder;
    std::vector<std::string> m_arguments;
};

}  // namespace

std::map<std::string_view, AttackCost> CountAttacks(const std::vector<Attack>& attacks)
{
    Counting counting;
    for (const Attack& attack : attacks) {
        counting.Add(attack, attack.countedSize / 2);
        counting.Add(attack, attack.countedSize);
    }
    std::istringstream lines = counting.Run();
    HRESULT code = 0;
    const std::uint64_t common = counting.Next(lines, code);
    std::map<std::string_view, AttackCost> costs;
    for (const Attack& attack : attacks) {
        const std::uint64_t half = counting.Next(lines, code);
        const std::uint64_t full = counting.Next(lines, code);
        if (half >= common && full >= common) {
            costs[attack.label] = {code, half - common, full - common};
        } else {
            costs[attack.label] = {};
        }
    }
    return costs;
}

}  // namespace zupm::test

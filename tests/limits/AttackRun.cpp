#include "tests/limits/AttackRun.h"

#include <filesystem>
#include <sstream>
#include <stdexcept>
#include <string>

#include "tests/support/ChildProcess.h"
#include "tests/support/TempFolder.h"

namespace zupm::test {

AttackRun RunAttack(const Attack& attack, std::size_t size)
{
    const TempFolder folder;
    folder.Write(u"in.xml", attack.file(size));
    const ChildRun child = RunChild({ZUPM_ATTACKER, folder.Folder(), {}},
                                    {std::string(attack.label), (folder.Folder() / "in.xml").string()});
    AttackRun run;
    std::istringstream line(child.out);
    if (child.exitCode != 0 || !(line >> run.code >> run.seconds >> run.peakBytes)) {
        throw std::runtime_error(std::string(attack.label) + " ended with " + std::to_string(child.exitCode) + ": " +
                                 child.out + child.messages);
    }
    return run;
}

}  // namespace zupm::test

// Edits on a policy file that is then saved.
//
// Promises: the component and libxml2 read the saved file with equal products, tasks and settings. A task's settings
// read back from an INI file. What nobody edited is the same, byte for byte. Saving twice, or again after loading,
// gives the same bytes.
#include <cstdint>
#include <string>

#include "fuzz/edit/BaseFiles.h"
#include "fuzz/edit/IniExport.h"
#include "fuzz/edit/PeerPolicies.h"
#include "fuzz/edit/Script.h"
#include "fuzz/edit/Snapshot.h"
#include "fuzz/edit/Untouched.h"
#include "fuzz/support/Demand.h"
#include "fuzz/support/Host.h"
#include "fuzz/support/LibraryLoad.h"
#include "fuzz/support/PeerComparison.h"
#include "xml/Encoding.h"

namespace zupm::fuzz {

using test::PolicyFileClient;

namespace {

constexpr int kMostSteps = 5;

/// Saves, and saves again.
std::string Save(PolicyFileClient& file)
{
    const Host& host = Host::Get();
    Demand(file.Write(host.Path(u"saved.xml")) == 0, "an edited file can be saved");
    std::string saved = host.Read(u"saved.xml");
    Demand(file.Write(host.Path(u"again.xml")) == 0, "an edited file can be saved again");
    Demand(host.Read(u"again.xml") == saved, "saving twice gives the same bytes");
    return saved;
}

void DemandSameAfterLoading(const Snapshot& before, const std::string& saved, const Known& known)
{
    PolicyFileClient loaded;
    Demand(loaded.Load(Host::Get().Path(u"saved.xml")) == 0, "what was saved can be loaded", saved);
    Snapshot after = TakeSnapshot(loaded, known);
    if (AdvXMLParser::DetectEncoding(saved) == AdvXMLParser::UTF_ENCODINGS::Iso8859_1) {
        // Characters that ISO-8859-1 cannot hold became references.
        after.text = before.text;
    }
    Demand(after.text == before.text, "what was saved is the same text", saved);
    Demand(after == before, "what was saved reads back equal", saved);
}

void DemandSameWithPeer(const Snapshot& snapshot, const std::string& saved, const Known& known)
{
    const PeerReading peer = ReadWithPeer(saved);
    Demand(peer.document.has_value(), "libxml2 accepts what was saved", peer.refusal);
    const LibraryLoad load = LoadFromMemory(saved);
    DemandSameElements(*load.document, *load.tree, *peer.document);
    DemandSameInPeer(*peer.document, snapshot, known);
}

void DemandExports(const PolicyFileClient& file, const Known& known)
{
    for (const auto& [softwareId, taskId] : known.tasks) {
        test::TaskClient task;
        if (file.GetTask(softwareId, taskId, task) == 0) {
            DemandIniExport(task);
        }
    }
}

void Edit(Input input)
{
    const std::u16string path = Host::Get().Write(u"loaded.xml", MakeBaseFile(input));
    PolicyFileClient file;
    if (file.Load(path) != 0) {
        return;
    }
    const std::u16string before = file.Buffer().value();
    Script script(input, file);
    bool isIndexed = true;
    for (int step = 0; step < kMostSteps && isIndexed && !input.IsAtEnd(); ++step) {
        isIndexed = script.Step();
    }
    const std::string saved = Save(file);
    if (!isIndexed) {
        Demand(file.Load(Host::Get().Path(u"saved.xml")) == 0, "what was saved can be loaded", saved);
    }
    const Snapshot snapshot = TakeSnapshot(file, script.Touched());
    DemandSameAfterLoading(snapshot, saved, script.Touched());
    DemandSameWithPeer(snapshot, saved, script.Touched());
    DemandExports(file, script.Touched());
    const Untouched untouched = FindUntouched(*snapshot.text, script.Touched());
    const Untouched expected = FindUntouched(before, script.Touched());
    Demand(untouched.entries == expected.entries, "products and tasks that nobody edited stay byte for byte", saved);
    Demand(untouched.outside == expected.outside, "nothing outside of what was edited is lost", saved);
}

}  // namespace

}  // namespace zupm::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    zupm::fuzz::Edit(zupm::fuzz::Input(data, size));
    return 0;
}

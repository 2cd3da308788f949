#include "fuzz/load/ComponentLoad.h"

#include <string>

#include "fuzz/support/Demand.h"
#include "fuzz/support/Host.h"
#include "tests/support/PolicyFileClient.h"

namespace zupm::fuzz {

using test::PolicyFileClient;

namespace {

void DemandNothingLoaded(PolicyFileClient& file)
{
    Demand(!file.Buffer(), "after a failed load there is no text");
    Demand(file.FindPolicy(u"P1") == result::NotInitialised, "after a failed load there is no policy");
    Demand(file.FindTask(u"P1", u"T1") == result::NotInitialised, "after a failed load there is no task");
    Demand(file.Write(Host::Get().Path(u"never.xml")) == result::NotInitialised,
           "after a failed load nothing is written");
}

void DemandStableWriting(PolicyFileClient& file)
{
    const Host& host = Host::Get();
    Demand(file.Write(host.Path(u"first.xml")) == result::Success, "a loaded file is written");
    const std::string first = host.Read(u"first.xml");
    Demand(file.Write(host.Path(u"second.xml")) == result::Success, "a loaded file is written again");
    Demand(host.Read(u"second.xml") == first, "writing twice gives the same bytes");
    const LibraryLoad again = LoadFromMemory(first);
    Demand(again.code == result::Success, "what was written can be loaded", first);
}

}  // namespace

void DemandSameFromComponent(std::string_view bytes, const LibraryLoad& load)
{
    const std::u16string path = Host::Get().Write(u"loaded.xml", bytes);
    PolicyFileClient file;
    const result::Code code = file.Load(path);
    Demand(code == load.code, "the component gives the document library's code", std::to_string(code));
    if (code < 0) {
        DemandNothingLoaded(file);
        return;
    }
    Demand(file.Buffer() == load.document->GenerateXML(false).Wide(), "the component holds the same text");
    DemandStableWriting(file);
}

}  // namespace zupm::fuzz

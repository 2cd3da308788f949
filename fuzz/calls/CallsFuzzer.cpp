// Scripts of calls over all four classes: through slots, by name, in any order, with null, foreign and unfitting
// arguments, several objects alive at once, alone and as parts of others. Foreign objects call back before they answer.
//
// Promises: no crash and no leak; every call gives a documented code with the error information that goes with it; when
// everything was released, the component has nothing left and there is no stray file.
#include <cstdint>
#include <string>

#include "common/CzuLogger.h"
#include "fuzz/calls/Files.h"
#include "fuzz/calls/NameCall.h"
#include "fuzz/calls/Objects.h"
#include "fuzz/calls/SlotCall.h"
#include "fuzz/support/Input.h"

namespace zupm::fuzz {

namespace {

constexpr std::size_t kLongestFile = 2048;
constexpr int kMostSteps = 60;

void Step(Input& input, Objects& objects)
{
    enum : std::uint8_t { Create, Drop, Query, Numbers, ByName, ByNameToo, Last = 11 };
    switch (input.UpTo<std::uint8_t>(Last)) {
        case Create:
            objects.Create(input);
            break;
        case Drop:
            objects.Drop(input);
            break;
        case Query:
            objects.Query(input);
            break;
        case Numbers:
            AskForNumbers(input, objects);
            break;
        case ByName:
        case ByNameToo:
            CallByName(input, objects);
            break;
        default:
            CallThroughSlot(input, objects);
    }
}

void Run(Input input)
{
    ResetFiles(input.Bytes(kLongestFile));
    {
        Objects objects(Step);
        objects.CreateLoaded(input.UpTo(3) == 3 ? MakePath(input) : SamplePath());
        objects.Create(input);
        for (int step = 0; step < kMostSteps && !input.IsAtEnd(); ++step) {
            Step(input, objects);
        }
    }
    DemandNoStrayFiles();
}

}  // namespace

}  // namespace zupm::fuzz

/// Log lines are made, and go nowhere.
extern "C" int LLVMFuzzerInitialize(int* /*argumentCount*/, char*** /*arguments*/)
{
    zupm::CzuLogger::SetSink([](const zupm::LogMessage&) {});
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    zupm::fuzz::Run(zupm::fuzz::Input(data, size));
    return 0;
}

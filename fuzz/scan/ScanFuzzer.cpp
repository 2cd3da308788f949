// Any bytes as a text for the scanner.
//
// Promises: in each of its forms, in pieces of any size, the scanner accepts the same; what it accepts the gate
// accepts, too, with the same records; what the gate accepts and the scanner does not has a DOCTYPE, and after the
// start tag of the root the scanner accepts that as well.
#include <cstddef>
#include <cstdint>
#include <string>

#include "fuzz/support/Demand.h"
#include "tests/xml/scan/GateAgreement.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string text(reinterpret_cast<const char*>(data), size);
    const AdvXMLParser::Agreement agreement = AdvXMLParser::CompareWithGate(text);
    zupm::fuzz::Demand(agreement.difference.empty(), "the scanner agrees with the gate", agreement.difference);
    zupm::fuzz::Demand(!agreement.isPassedOnNeedlessly, "only what has a DOCTYPE is passed on", text);
    return 0;
}

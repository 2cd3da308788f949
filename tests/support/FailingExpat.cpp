// The allocations of Expat, counted among the others: the linker sends the component's calls here.
#include <expat.h>

#include "tests/support/FailingAllocations.h"

extern "C" XML_Parser XMLCALL __wrap_XML_ParserCreate(const XML_Char* encoding);

XML_Parser XMLCALL __wrap_XML_ParserCreate(const XML_Char* encoding)
{
    using namespace zupm::test;
    static constexpr XML_Memory_Handling_Suite kMemory{AllocateOrFail, ReallocateOrFail, FreeAllocated};
    return XML_ParserCreate_MM(encoding, &kMemory, nullptr);
}

#include "tests/support/ClassAnnouncement.h"

#include "module/native/AnnounceClasses.h"

namespace zupm::test {

HRESULT AnnounceTestClasses()
{
    return AnnounceClasses();
}

void WithdrawTestClasses()
{
    WithdrawClasses();
}

}  // namespace zupm::test

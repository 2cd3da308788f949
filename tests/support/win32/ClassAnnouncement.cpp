#include "tests/support/ClassAnnouncement.h"

#include "module/win32/AnnounceClasses.h"

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

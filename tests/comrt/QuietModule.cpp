// A module that must be registered: it announces nothing.
#include "tests/comrt/ToyModule.h"

HRESULT DllGetClassObject(REFCLSID clsid, REFIID iid, void** out)
{
    return zupm::test::ToyClassObject(zupm::test::kQuietClass, clsid, iid, out);
}

HRESULT DllCanUnloadNow()
{
    return zupm::test::g_inUse == 0 ? S_OK : S_FALSE;
}

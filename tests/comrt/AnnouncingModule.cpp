// A module that announces its class while it is loaded, and withdraws it while it is unloaded.
#include "tests/comrt/ToyModule.h"

HRESULT DllGetClassObject(REFCLSID clsid, REFIID iid, void** out)
{
    return zupm::test::ToyClassObject(zupm::test::kAnnouncedClass, clsid, iid, out);
}

HRESULT DllCanUnloadNow()
{
    return zupm::test::g_inUse == 0 ? S_OK : S_FALSE;
}

namespace {

constexpr ZuClassEntry kEntries[] = {{zupm::test::kAnnouncedClass, u"Toy.Announced.1"}};

struct Announcer {
    Announcer() { static_cast<void>(ZuAnnounceModule(kEntries, 1, &DllGetClassObject)); }
    ~Announcer() { ZuWithdrawModule(&DllGetClassObject); }
};

const Announcer g_announcer;

}  // namespace

// A module that has the entry point of the component and none of its classes.
#include <zuPolicyManager/zuPolicyManager.h>

#ifndef STDMETHODCALLTYPE
#define STDMETHODCALLTYPE
#endif

extern "C" HRESULT STDMETHODCALLTYPE DllGetClassObject(REFCLSID /*clsid*/, REFIID /*iid*/, void** object)
{
    *object = nullptr;
    return CLASS_E_CLASSNOTAVAILABLE;
}

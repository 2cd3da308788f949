// A module that has the entry point of the component and none of its classes.
extern "C" int DllGetClassObject(const void* /*clsid*/, const void* /*iid*/, void** object)
{
    *object = nullptr;
    return static_cast<int>(0x80040111u);  // CLASS_E_CLASSNOTAVAILABLE
}

/// The types and functions of the component object model, on both targets: the operating system's on Windows, those of
/// the native component runtime everywhere else.
#pragma once

#ifdef _WIN32
#include <oaidl.h>
#include <objbase.h>
#include <oleauto.h>
#else
#include <zuPolicyManager/zucomrt.h>
#endif

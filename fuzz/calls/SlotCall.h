/// Calls through the slots of an interface.
#pragma once

#include "fuzz/calls/Objects.h"

namespace zupm::fuzz {

/// Calls one member of one object with fitting arguments, null ones included, and demands a documented code, error
/// information that goes with it, and slots left alone by a failure. What is handed out joins the objects.
void CallThroughSlot(Input& input, Objects& objects);

}  // namespace zupm::fuzz

/// Calls by name and number, as scripts make them.
#pragma once

#include "fuzz/calls/Objects.h"

namespace zupm::fuzz {

/// Calls one object through Invoke, mostly a member of its own with fitting arguments, and demands a documented code.
/// What is handed out joins the objects.
void CallByName(Input& input, Objects& objects);

/// Asks one object for the numbers of names.
void AskForNumbers(Input& input, Objects& objects);

}  // namespace zupm::fuzz

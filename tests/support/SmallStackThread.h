/// Running code on a thread with a small stack: what recurses with the depth of a document fails there.
#pragma once

#include <functional>

namespace zupm::test {

/// Runs `work` on a new thread with a stack of 1 MiB and waits for it.
void RunOnSmallStack(const std::function<void()>& work);

}  // namespace zupm::test

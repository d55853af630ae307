#pragma once

namespace tarn {

// Registers a function that is called on the calling thread at its end, or at the exit of the
// process if this thread exits it. The functions of a thread are called in reverse order of
// registration, after its thread_local objects were destroyed; one that is registered meanwhile is
// called as well. If another thread exits the process, they are not called. Supplied by the port,
// since destructors of thread_local objects of a library run too late on some systems. Throws
// std::bad_alloc.
void AtThreadEnd(void (*function)());

}  // namespace tarn

#pragma once

namespace morvane {

/// Lets all threads of this process take their memory from one heap, where the C library would give
/// each a heap of its own. What one thread takes and another gives back, as each event is, would
/// otherwise leave those heaps in pieces, and a burst's memory would stay for good. To be called
/// once, before there is a second thread; a refusal changes nothing.
void shareOneHeap();

/// Gives the system back what is free in it, in whole pages. Takes a millisecond or a few; safe
/// from any thread.
void giveBackFreeMemory();

} // namespace morvane

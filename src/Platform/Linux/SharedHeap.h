#pragma once

namespace morvane {

/// Makes all threads of this process allocate from one heap, where the C library would give each
/// its own. Memory that one thread allocates and another frees, as for each event, would otherwise
/// fragment those heaps, and a burst's memory would never be given back. Call once, before there is
/// a second thread; a refusal changes nothing.
void shareOneHeap();

/// Gives the heap's free pages back to the system. Takes a millisecond or a few; safe from any
/// thread.
void giveBackFreeMemory();

} // namespace morvane

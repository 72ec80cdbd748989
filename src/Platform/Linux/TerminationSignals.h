#pragma once

class QCoreApplication;

namespace morvane {

/// Lets the signals by which a person, a desktop or a terminal asks a program to end, end this one
/// by its event loop, so that what is still to be written is written. The same one a second time
/// ends it at once, and one that whoever started the program has had ignored stays ignored. To be
/// called once, on the application's thread.
void endOnTerminationSignals(QCoreApplication &application);

/// Lets a write past the limit of a file's size fail, as one to a full disk does, where the signal
/// would end the process. Programs that are started from here find the signal as it usually is.
void failWritesPastLimit();

} // namespace morvane

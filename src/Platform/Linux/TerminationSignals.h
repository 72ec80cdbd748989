#pragma once

class QCoreApplication;

namespace morvane {

/// Makes the signals that ask a program to end (SIGTERM, SIGINT, SIGHUP) end the event loop, so
/// that pending writes are still done. The same signal a second time ends the process at once; a
/// signal that was already ignored when the program started stays ignored. Call once, on the
/// application's thread.
void endOnTerminationSignals(QCoreApplication &application);

/// Makes a write past the file size limit fail, as one to a full disk does, where SIGXFSZ would end
/// the process. Programs that are started from here get the signal's default action.
void failWritesPastLimit();

} // namespace morvane

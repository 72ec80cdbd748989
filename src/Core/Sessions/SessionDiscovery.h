#pragma once

#include "Core/Sessions/DiscoveredSession.h"

#include <QList>

namespace morvane {
class Processes;
}

/// Finds the sessions that were active before the program started, by the transcripts in the home
/// folder. Reads only recent transcripts, and only their beginning, so that the work doesn't grow
/// with the old ones that have piled up. Stateless; reads files, so not for the main thread.
namespace morvane::SessionDiscovery {

/// The sessions whose transcript was written less than `maxAge` before `now` and whose agent still
/// runs, as far as the machine tells; the latest first. What can't be read is passed over.
QList<DiscoveredSession> scan(Seconds maxAge, Date now, const Processes &processes);

} // namespace morvane::SessionDiscovery

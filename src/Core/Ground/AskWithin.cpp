#include "Core/Ground/AskWithin.h"

#include <memory>

namespace morvane {

Task askWithin(Seconds limit, HttpsClient &client, Scheduler &scheduler,
               const HttpsRequest &request, HttpsClient::Finished finished) {
    struct Pending {
        Task transfer;
        Task deadline;

        void end() {
            transfer.cancel();
            deadline.cancel();
        }
    };
    const auto pending = std::make_shared<Pending>();
    const auto finish = [pending, finished = std::move(finished)](const auto &answer) {
        pending->end();
        finished(answer);
    };
    pending->transfer = client.send(request, finish);
    pending->deadline = scheduler.after(limit, [finish] { finish(std::nullopt); });
    return Task([pending] { pending->end(); });
}

} // namespace morvane

#pragma once

namespace morvane {

class BackgroundPool;
class HttpsClient;
class Scheduler;
class SecretStore;
class ToolDialogue;

/// The ports through which limits are asked for. The secret store and the dialogue must outlive the
/// background jobs, the other ports whoever asks.
struct UsagePorts {
    Scheduler &scheduler;
    BackgroundPool &background;
    SecretStore &secrets;
    HttpsClient &https;
    ToolDialogue &dialogue;
};

} // namespace morvane

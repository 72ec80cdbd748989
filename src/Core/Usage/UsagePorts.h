#pragma once

namespace morvane {

class BackgroundPool;
class HttpsClient;
class Scheduler;
class SecretStore;
class ToolDialogue;

/// What limits are asked by. The secret store and the dialogue must outlive what runs in the
/// background, the rest whoever asks.
struct UsagePorts {
    Scheduler &scheduler;
    BackgroundPool &background;
    SecretStore &secrets;
    HttpsClient &https;
    ToolDialogue &dialogue;
};

} // namespace morvane

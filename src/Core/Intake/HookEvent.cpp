#include "Core/Intake/HookEvent.h"

#include "Core/Agents/AgentAdapter.h"
#include "Core/Agents/TranscriptReader.h"
#include "Core/Ground/JsonMembers.h"
#include "Core/Ground/JsonObject.h"

#include <QCryptographicHash>

#include <algorithm>
#include <array>

namespace morvane {

namespace {

using simdjson::dom::object;
using TranscriptReader::displayLine;

std::optional<QString> nonEmpty(std::optional<QString> text) {
    return text && !text->isEmpty() ? std::move(text) : std::nullopt;
}

std::optional<QString> trimmed(const std::optional<QString> &text) {
    return text ? nonEmpty(text->trimmed()) : std::nullopt;
}

std::optional<QString> toolDetail(object input) {
    constexpr std::array keys{"command", "file_path", "path", "pattern", "url", "query"};
    for (const char *key : keys) {
        if (const auto text = nonEmpty(JsonObject::string(input, key))) {
            return displayLine(text);
        }
    }
    return std::nullopt;
}

/// The first of these texts, even an empty one: an agent that sends an empty message says nothing.
std::optional<QString> responseMessage(const JsonObject &body, std::optional<object> input) {
    for (const char *key : {"message", "reason"}) {
        if (const auto text = body.string(key)) {
            return displayLine(text);
        }
    }
    if (input) {
        for (const char *key : {"question", "prompt"}) {
            if (const auto text = JsonObject::string(*input, key)) {
                return displayLine(text);
            }
        }
    }
    return std::nullopt;
}

/// Whether the agent prompts itself, in the form of a person's prompt.
bool isAgentsOwnPrompt(CanonicalEvent kind, const JsonObject &body, const AgentContract &contract) {
    return contract.hasPromptsOfItsOwn && kind == CanonicalEvent::promptSubmit &&
           !nonEmpty(body.string("prompt"));
}

/// The option in an object, and whether the object holds nothing else.
std::pair<std::optional<AgentOption>, bool> option(object source) {
    const auto label = nonEmpty(JsonObject::string(source, "label"));
    if (!label) {
        return {std::nullopt, false};
    }
    const auto description = JsonObject::string(source, "description");
    const std::size_t taken = description ? 2 : 1;
    return {AgentOption{*label, trimmed(description)}, source.size() == taken};
}

std::optional<AgentQuestion> question(object source) {
    const auto text = trimmed(JsonObject::string(source, "question"));
    if (!text) {
        return std::nullopt;
    }
    AgentQuestion result{*text, JsonObject::string(source, "header"), {}};
    std::size_t taken = result.header ? 3 : 2;
    for (const object choice :
         JsonObject::objects(source, "options").value_or(std::vector<object>{})) {
        const auto [known, isWhole] = option(choice);
        result.isWhole &= isWhole;
        if (known) {
            result.options.append(*known);
        }
    }
    if (result.options.isEmpty()) {
        return std::nullopt;
    }
    bool multiSelect = false;
    if (source["multiSelect"].get(multiSelect) == simdjson::SUCCESS) {
        result.multiSelect = multiSelect;
        ++taken;
    }
    result.isWhole &= source.size() == taken;
    return result;
}

/// All the questions or none: a form with a gap in it could not be answered.
std::optional<QList<AgentQuestion>> questions(object input) {
    const auto sources = JsonObject::objects(input, "questions");
    if (!sources || sources->empty()) {
        return std::nullopt;
    }
    QList<AgentQuestion> result;
    for (const object source : *sources) {
        const auto one = question(source);
        if (!one) {
            return std::nullopt;
        }
        result.append(*one);
    }
    return result;
}

/// The tool's input as the body's own JSON text.
std::optional<std::string_view> rawInput(QByteArrayView body) {
    const std::string_view text(body.data(), static_cast<std::size_t>(body.size()));
    return JsonMembers::find(text, u"tool_input");
}

/// Leaves out the description: an agent may send it only with the permission request.
QByteArray digestOf(const HookEvent &event, std::string_view input) {
    QCryptographicHash hash(QCryptographicHash::Sha1);
    const auto add = [&hash](std::string_view text) {
        hash.addData(QByteArrayView(text));
        hash.addData(QByteArrayView("", 1));
    };
    add(event.toolName.value_or(QString()).toStdString());
    if (!input.starts_with('{')) {
        add(input);
        return hash.result();
    }
    for (const auto &[key, value] : JsonMembers::of(input)) {
        if (key != "description") {
            add(key);
            add(value);
        }
    }
    return hash.result();
}

/// For questions, what the input holds besides them: the panel shows them by themselves.
ReadableInput readable(std::string_view input, const HookEvent &event,
                       const AgentAdapter &adapter) {
    if (event.questions) {
        return ReadableInput::beside(input,
                                     {QStringLiteral("questions"), QStringLiteral("answers")});
    }
    const bool showsPlan = event.toolName && adapter.isPlanTool(*event.toolName);
    return showsPlan ? ReadableInput::ofPlan(input) : ReadableInput::of(input);
}

/// Whether it is one of the usual tools that launch a subagent; a release may have its own.
bool isSubagentTool(const QString &name) {
    constexpr std::array names{"Agent", "Task", "subagent", "Subagent"};
    return std::ranges::any_of(names,
                               [&](const char *known) { return name == QLatin1String(known); });
}

void takeTool(HookEvent &event, const JsonObject &body, const AgentAdapter &adapter) {
    event.toolName = body.string("tool_name");
    const bool isReleasesOwn = event.toolName && adapter.launchesSubagent(*event.toolName);
    event.launchesSubagent = isReleasesOwn || (event.toolName && isSubagentTool(*event.toolName));
    event.asksAnew = event.toolName && adapter.isPlanTool(*event.toolName);
    event.toolUseID = body.string("tool_use_id");
    const auto input = JsonObject::object(body.root(), "tool_input");
    if (input) {
        event.toolDetail = toolDetail(*input);
        event.questions = questions(*input);
        event.taskDescription =
            displayLine(JsonObject::string(*input, isReleasesOwn ? "message" : "description"));
    }
    event.responseMessage = responseMessage(body, input);
}

void takeInput(HookEvent &event, QByteArrayView body, const AgentAdapter &adapter) {
    const AgentContract &contract = adapter.contract();
    const bool asks = event.kind == CanonicalEvent::permissionRequest;
    const bool announces = contract.announcesWhileAsking && event.kind == CanonicalEvent::toolUse;
    const auto input = asks || announces ? rawInput(body) : std::nullopt;
    if (!input || *input == "null") {
        return;
    }
    if (asks) {
        event.toolInput = readable(*input, event, adapter);
    }
    if (contract.announcesWhileAsking) {
        event.callDigest = digestOf(event, *input);
    }
}

void takePlace(HookEvent &event, const HookOrigin &origin, const AgentContract &contract) {
    event.process = origin.process;
    event.ttyName = origin.ttyName;
    // A server with no terminal among its ancestors has the variables of another place.
    if (contract.hooksRunInServer && !event.ttyName) {
        return;
    }
    event.itermSessionID = origin.itermSessionID;
    event.termProgram = origin.termProgram;
    event.hostBundleID = origin.hostBundleID;
    event.pane = origin.pane;
}

/// Agents use two keys for them. A failure has keys of its own, the plainest first.
std::optional<QString> lastWords(const JsonObject &body, CanonicalEvent kind) {
    for (const char *key : {"last_assistant_message", "prompt_response"}) {
        if (const auto words = displayLine(body.string(key))) {
            // Gemini CLI sends this instead of an empty text.
            return words != QLatin1String("[no response text]") ? words : QString();
        }
    }
    if (kind == CanonicalEvent::turnEnd) {
        return std::nullopt;
    }
    for (const char *key : {"error_details", "error"}) {
        if (const auto failure = displayLine(body.string(key))) {
            return failure;
        }
    }
    return QString();
}

/// Takes what the contract of the agent's release says about the event and its session.
void takeContract(HookEvent &event, const JsonObject &body, const AgentContract &contract) {
    event.asksForSubagent = contract.subagentsAsk && event.agentID.has_value() &&
                            event.kind == CanonicalEvent::permissionRequest;
    if (contract.tellsLastWords &&
        (event.kind == CanonicalEvent::turnEnd || event.kind == CanonicalEvent::turnFailed)) {
        event.lastWords = lastWords(body, event.kind);
    }
    event.asksAfterHook = contract.asksAfterHook;
    event.endsTurnsInTranscript = contract.endsTurnsInTranscript;
    event.titlesLag = contract.titlesLag;
}

QList<BackgroundTask> backgroundTasks(const JsonObject &body) {
    QList<BackgroundTask> result;
    const auto tasks = JsonObject::objects(body.root(), "background_tasks");
    for (const object task : tasks.value_or(std::vector<object>{})) {
        if (const auto type = JsonObject::string(task, "type")) {
            result.append({*type, displayLine(JsonObject::string(task, "description"))});
        }
    }
    return result;
}

} // namespace

std::optional<HookEvent> HookEvent::decode(const AgentAdapter &adapter, const QString &nativeName,
                                           QByteArrayView bytes, const HookOrigin &origin) {
    const auto body = JsonObject::parse(bytes);
    if (!body) {
        return std::nullopt;
    }
    const auto sessionID = nonEmpty(adapter.sessionID(*body));
    const auto kind = adapter.canonical(nativeName, body->string("notification_type"));
    if (!sessionID || !kind || isAgentsOwnPrompt(*kind, *body, adapter.contract())) {
        return std::nullopt;
    }
    HookEvent event;
    event.agent = adapter.kind();
    event.kind = *kind;
    event.nativeName = nativeName;
    event.sessionID = *sessionID;
    event.cwd = adapter.cwd(*body);
    event.prompt = displayLine(body->string("prompt"));
    event.transcriptPath = body->string("transcript_path");
    event.agentID = body->string("agent_id");
    event.isCompaction = event.kind == CanonicalEvent::sessionStart &&
                         body->string("source") == QLatin1String("compact");
    event.isOfBackground = event.kind == CanonicalEvent::idle &&
                           body->string("notification_type") == QLatin1String("agent_completed");
    if (adapter.reportsBackgroundTasks()) {
        event.backgroundTasks = morvane::backgroundTasks(*body);
    }
    takeTool(event, *body, adapter);
    takeInput(event, bytes, adapter);
    takeContract(event, *body, adapter.contract());
    takePlace(event, origin, adapter.contract());
    return event;
}

QList<BackgroundTask> HookEvent::pendingAgents() const {
    QList<BackgroundTask> result;
    std::ranges::copy_if(backgroundTasks, std::back_inserter(result), [](const auto &task) {
        return task.type == QLatin1String("subagent") || task.type == QLatin1String("workflow");
    });
    return result;
}

} // namespace morvane

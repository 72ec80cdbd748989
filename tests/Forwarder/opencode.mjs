// Loads a plugin as OpenCode does, and takes it through the steps from the standard input, once in
// each environment: {"sessions": {ID: SESSION}, "steps": [[HOOK, ARGUMENT...] or [EVENT,
// PROPERTIES]], "environments": [{NAME: VALUE}], "limit": MILLISECONDS}. The limit replaces those
// of the plugin, which drops what takes longer. A session may have "said" something. With a "gate",
// a FIFO, the plugin reads no file before somebody has opened that. Prints whether the hooks have
// returned at once, and when the plugin is ready to end.
import { readFileSync } from "node:fs";
import files from "node:fs/promises";
import { syncBuiltinESMExports } from "node:module";

const { sessions, steps, environments, limit, gate } = JSON.parse(readFileSync(0, "utf8"));
const { Morvane } = await import(process.argv[2]);
const { readFile } = files;
files.readFile = async (...given) => {
    await (gate && readFile(gate));
    return readFile(...given);
};
syncBuiltinESMExports();
const message = (said) => ({ info: { role: "assistant" }, parts: [{ type: "text", text: said }] });
const client = {
    session: {
        get: async ({ path }) => ({ data: sessions[path.id] }),
        messages: async ({ path }) => ({ data: [message(sessions[path.id].said)] }),
    },
};
const inherited = process.env;
const { setTimeout } = globalThis;
globalThis.setTimeout = (end, own) => setTimeout(end, limit ?? own);
for (const environment of environments) {
    process.env = { ...inherited, ...environment };
    const hooks = await Morvane({ client, directory: "/projects/asteroids" });

    // Runs once nothing more can be done without waiting for I/O.
    let waited = false;
    setImmediate(() => (waited = true));
    for (const [hook, ...given] of steps) {
        // OpenCode waits for its hooks, but not for those that hear of events.
        if (hook in hooks) {
            await hooks[hook](...given);
        } else {
            hooks.event({ event: { type: hook, properties: given[0] } });
        }
    }
    console.log(waited ? "held up" : "told");
    await hooks.dispose();
    console.log("over");
}

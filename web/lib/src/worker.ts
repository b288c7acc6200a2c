// The program of a worker. It is a classic script: of a page opened from disk, only those run.

import type { Message, Reply } from "./protocol.js";
import { Server } from "./server.js";
import { PokermathError } from "./types.js";

let server: Server | undefined;

function replyTo(message: Exclude<Message, { module: unknown }>): Reply {
  try {
    if (!server) throw new Error("there is no module yet");
    const called = server[message.name] as (...args: unknown[]) => unknown;
    return { value: called.apply(server, message.args) };
  } catch (error) {
    const complaint = server?.recover(error) ?? "";
    if (error instanceof PokermathError) {
      return { refused: { message: error.message, field: error.field } };
    }
    return { broken: `the module broke: ${String(error)}${complaint}` };
  }
}

self.onmessage = ({ data }: MessageEvent<Message>) => {
  if ("module" in data) {
    server = new Server(data.module);
    return;
  }
  const reply = replyTo(data);
  const bytes = "value" in reply && reply.value instanceof Uint8Array ? [reply.value.buffer] : [];
  self.postMessage(reply, { transfer: bytes });
};

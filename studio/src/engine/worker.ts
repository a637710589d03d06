// Draws frames off the page's own thread, one at a time.
import { Effect, refused } from "./effect";
import type { FromWorker, ToWorker } from "./messages";

const say = (message: FromWorker, transfer: Transferable[] = []): void =>
  (self as unknown as Worker).postMessage(message, transfer);

let effect: Effect | undefined;
let latest: Int32Array | undefined;

/** Of former frames, the newest last. */
const spares: ArrayBuffer[] = [];
const mostSpares = 3;

function room(bytes: number): ArrayBuffer {
  const found = spares.findLastIndex((spare) => spare.byteLength === bytes);
  return found < 0 ? new ArrayBuffer(bytes) : spares.splice(found, 1)[0];
}

function act(message: ToWorker): void {
  if (message.kind === "start") {
    effect = new Effect(message.module);
    latest = message.latest;
    return;
  }
  if (message.kind === "spare") {
    if (spares.push(message.buffer) > mostSpares) spares.shift();
    return;
  }
  if (!effect) return;
  if (message.kind === "picture") {
    if (!effect.takePicture(message.slot, message.picture)) say({ kind: "noMemory", slot: message.slot });
    return;
  }
  const { job } = message;
  const begin = performance.now();
  let told = begin;
  effect.onProgress = (done, total) => {
    // The page counts the tickets in memory that both see, where it may share memory with its workers.
    if (latest && Atomics.load(latest, 0) !== job.ticket) return true;
    const now = performance.now();
    if (now - told > 100) {
      told = now;
      say({ kind: "progress", ticket: job.ticket, share: total > 0 ? done / total : 0 });
    }
    return false;
  };
  effect.table = job.table;
  const code = effect.draw(job.downsample, 8, job.time);
  const picture = code === 0 ? effect.frame8(room) : undefined;
  const milliseconds = performance.now() - begin;
  const complaint = code === refused ? effect.complaint : undefined;
  say({ kind: "drawn", job, code, picture, milliseconds, complaint }, picture ? [picture.pixels.buffer] : []);
}

self.onmessage = (event: MessageEvent<ToWorker>) => {
  try {
    act(event.data);
  } catch (error) {
    say({ kind: "broken", text: error instanceof Error ? error.message : String(error) });
  }
};

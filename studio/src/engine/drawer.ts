// Keeps one worker busy with the newest wish only: a newer one stops the frame under way.
//
// Where the page may share memory with its workers (it is served with the two headers for that), the effect itself is
// told at its next progress call. Elsewhere a worker that is too long about an old frame is put away for a new one.
import { outOfMemory, refused, type Picture } from "./effect";
import type { FromWorker, Job, ToWorker } from "./messages";
import workerFile from "./worker.ts?worker&url";

/** What a drawing worker is made of. */
export interface Program {
  module: WebAssembly.Module;
  /** The worker's script. It is kept in the page, so that a new worker needs no server. */
  workerUrl: string;
}

export async function loadProgram(moduleFile: string): Promise<Program> {
  const [module, script] = await Promise.all([
    // Not as a stream: a plain file server may not know the kind of the file.
    load(moduleFile).then(async (response) => WebAssembly.compile(await response.arrayBuffer())),
    load(workerFile).then((response) => response.text()),
  ]);
  return { module, workerUrl: URL.createObjectURL(new Blob([script], { type: "text/javascript" })) };
}

async function load(file: string): Promise<Response> {
  const response = await fetch(file);
  if (!response.ok) throw new Error(`a part of it is missing (${response.status})`);
  return response;
}

export interface Drawn {
  job: Job;
  picture: Picture;
  milliseconds: number;
}

/** A worker gets so long to end an old frame by itself, ms. */
const patience = 60;

export class Drawer {
  onDrawn: (drawn: Drawn) => void = () => undefined;
  onProgress: (share: number) => void = () => undefined;
  onTrouble: (text: string) => void = () => undefined;
  /** A frame that can't be drawn as it is asked: why, without a full stop. */
  onRefused: (text: string, ticket: number) => void = () => undefined;
  /** Frames that were stopped before they were whole; for the tests. */
  stoppedFrames = 0;
  private worker: Worker;
  private readonly latest?: Int32Array<SharedArrayBuffer>;
  private readonly pictures = new Map<number, Picture>();
  private current?: Job;
  private next?: Job;
  private ticket = 0;
  private impatience?: ReturnType<typeof setTimeout>;

  constructor(private readonly program: Program) {
    if (globalThis.crossOriginIsolated) this.latest = new Int32Array(new SharedArrayBuffer(4));
    this.worker = this.startWorker();
  }

  get busy(): boolean {
    return this.current !== undefined;
  }

  /** A frame of the picture before it is of no use any more; a layer's picture waits until the frame is drawn. */
  takePicture(slot: number, picture: Picture): void {
    this.pictures.set(slot, picture);
    if (slot === 0) this.stopCurrent();
    this.say({ kind: "picture", slot, picture });
  }

  /** @returns the job's ticket: a frame of this one or a later is what was wished */
  draw(wish: Omit<Job, "ticket">): number {
    this.ticket += 1;
    const job: Job = { ...wish, ticket: this.ticket };
    if (!this.current) {
      this.begin(job);
      return job.ticket;
    }
    this.next = job;
    if (!this.current.draft) this.stopCurrent();
    return job.ticket;
  }

  /** A frame's picture that nobody looks at any more; its pixels are gone with this. */
  giveBack(picture: Picture): void {
    const { buffer } = picture.pixels;
    this.worker.postMessage({ kind: "spare", buffer } satisfies ToWorker, [buffer]);
  }

  private stopCurrent(): void {
    if (!this.current) return;
    if (this.latest) {
      this.ticket += 1;
      Atomics.store(this.latest, 0, this.ticket);
      return;
    }
    this.impatience ??= setTimeout(() => {
      this.stoppedFrames += 1;
      this.worker.terminate();
      this.worker = this.startWorker();
      this.ended();
    }, patience);
  }

  private begin(job: Job): void {
    this.current = job;
    if (this.latest) Atomics.store(this.latest, 0, job.ticket);
    this.say({ kind: "draw", job });
  }

  private ended(): void {
    clearTimeout(this.impatience);
    this.impatience = undefined;
    this.current = undefined;
    const job = this.next;
    this.next = undefined;
    if (job) this.begin(job);
  }

  private startWorker(): Worker {
    const worker = new Worker(this.program.workerUrl, { type: "module" });
    worker.onerror = (event) => this.onTrouble(`The effect can't be started: ${event.message || "the browser gives no reason"}.`);
    worker.onmessage = (event: MessageEvent<FromWorker>) => this.hear(event.data);
    const send = (message: ToWorker): void => worker.postMessage(message);
    send({ kind: "start", module: this.program.module, latest: this.latest });
    for (const [slot, picture] of this.pictures) send({ kind: "picture", slot, picture });
    return worker;
  }

  private say(message: ToWorker): void {
    this.worker.postMessage(message);
  }

  private hear(message: FromWorker): void {
    switch (message.kind) {
      case "progress":
        if (message.ticket === this.current?.ticket) this.onProgress(message.share);
        break;
      case "noMemory":
        this.onTrouble("There is not enough memory for this picture.");
        break;
      case "broken":
        this.onTrouble(`The effect stopped: ${message.text}`);
        this.worker.terminate();
        this.worker = this.startWorker();
        this.ended();
        break;
      case "drawn": {
        const { job, picture, milliseconds, code, complaint } = message;
        if (picture) this.onDrawn({ job, picture, milliseconds });
        else if (code === refused) this.onRefused(complaint ?? "", job.ticket);
        else if (code === outOfMemory) this.onRefused("There is not enough memory for this frame", job.ticket);
        else this.stoppedFrames += 1;
        this.ended();
        break;
      }
    }
  }
}

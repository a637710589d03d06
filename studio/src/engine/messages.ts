// What the page and its drawing workers say to each other.
import type { Picture, Time } from "./effect";

export interface Job {
  /** Counts up; a job with a later one makes this one pointless. */
  ticket: number;
  table: Float64Array<ArrayBuffer>;
  downsample: 1 | 2 | 4;
  time: Time;
  /** A quick small frame while a control moves: it is let come to its end, so that there is something to see. */
  draft: boolean;
}

export type ToWorker =
  | { kind: "start"; module: WebAssembly.Module; latest?: Int32Array<SharedArrayBuffer> }
  | { kind: "picture"; slot: number; picture: Picture }
  /** Of a picture that the page has no use for any more; room for a coming frame. */
  | { kind: "spare"; buffer: ArrayBuffer }
  | { kind: "draw"; job: Job };

export type FromWorker =
  | { kind: "noMemory"; slot: number }
  | { kind: "progress"; ticket: number; share: number }
  | { kind: "drawn"; job: Job; code: number; picture?: Picture; milliseconds: number; complaint?: string }
  | { kind: "broken"; text: string };

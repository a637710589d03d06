// The effect as a program in WebAssembly (studio/module/Studio.cpp): its calls, and its memory as the page sees it.
// Used by the page itself for the rules between controls, by the workers that draw, and by the tests.

export type Kind =
  | "number"
  | "whole number"
  | "angle"
  | "check box"
  | "colour"
  | "place"
  | "choice"
  | "layer"
  | "group"
  | "end of group"
  | "other";

/** One control as the effect declared it; see studio/module/ControlsJson.h. */
export interface Control {
  index: number;
  id: number;
  name: string;
  kind: Kind;
  flags: number;
  uiFlags: number;
  valid?: [number, number];
  slider?: [number, number];
  precision?: number;
  percent?: boolean;
  choices?: string[];
  choiceCount?: number;
  label?: string;
  default?: number | boolean | string | [number, number];
}

export interface Time {
  frame: number;
  /** Frames in a second are scale / step. */
  step: number;
  scale: number;
}

export interface Picture {
  width: number;
  height: number;
  /** Red, green, blue, alpha, straight colour. */
  pixels: Uint8Array<ArrayBuffer> | Uint8ClampedArray<ArrayBuffer>;
}

export const stopped = 1;
export const outOfMemory = 4;
/** What draw() gives when a layer can't be prepared as it is asked; complaint tells why. */
export const refused = -2;

interface Exports {
  memory: WebAssembly.Memory;
  _initialize(): void;
  start(): number;
  controls(): number;
  values(): number;
  greyed(): number;
  changed(index: number): number;
  picture(slot: number, width: number, height: number): number;
  frame(downsample: number, depth: number, time: number, step: number, scale: number): number;
  framePixels(): number;
  frameWidth(): number;
  frameHeight(): number;
  complaint(): number;
}

export class Effect {
  readonly controls: Control[];
  /** Asked while a frame is drawn; true stops it. */
  onProgress: (done: number, total: number) => boolean = () => false;
  private readonly calls: Exports;

  constructor(module: WebAssembly.Module) {
    const instance = new WebAssembly.Instance(module, {
      studio: { progress: (done: number, total: number) => (this.onProgress(done, total) ? stopped : 0) },
      env: { emscripten_notify_memory_growth: () => undefined },
      wasi_snapshot_preview1: {
        proc_exit: (code: number) => {
          throw new Error(`the effect ended with ${code}`);
        },
      },
    });
    this.calls = instance.exports as unknown as Exports;
    this.calls._initialize();
    const code = this.calls.start();
    if (code !== 0) throw new Error(`the effect can't be set up: error ${code}`);
    this.controls = JSON.parse(this.textAt(this.calls.controls())) as Control[];
  }

  /** Four numbers a control, as Studio.cpp tells; a copy. */
  get table(): Float64Array<ArrayBuffer> {
    return this.tableInPlace().slice();
  }

  set table(table: Float64Array) {
    this.tableInPlace().set(table);
  }

  /** 1 for each control that is greyed; a copy. */
  get greyed(): Uint8Array {
    return new Uint8Array(this.calls.memory.buffer, this.calls.greyed(), this.controls.length).slice();
  }

  /** The user changed this control (0: none): the effect's own rules change the table, and what is greyed. */
  changed(index: number): void {
    const code = this.calls.changed(index);
    if (code !== 0) throw new Error(`the effect refused a change: error ${code}`);
  }

  /** Slot 0 is the picture to draw on. False when there is no memory for it. */
  takePicture(slot: number, picture: Picture): boolean {
    const place = this.calls.picture(slot, picture.width, picture.height);
    if (place === 0) return false;
    new Uint8Array(this.calls.memory.buffer).set(picture.pixels, place);
    return true;
  }

  /** The host's code, 0 for success; frame8 or frame32 then give the pixels. */
  draw(downsample: number, depth: 8 | 32, time: Time): number {
    return this.calls.frame(downsample, depth, time.frame * time.step, time.step, time.scale);
  }

  /**
   * The last frame, a copy.
   * @param room  gives a buffer of this many bytes to copy into: memory that was in use before costs a fraction of new
   */
  frame8(room = (bytes: number) => new ArrayBuffer(bytes)): Picture {
    const width = this.calls.frameWidth();
    const height = this.calls.frameHeight();
    const begin = this.calls.framePixels();
    const pixels = new Uint8ClampedArray(room(width * height * 4));
    pixels.set(new Uint8Array(this.calls.memory.buffer, begin, pixels.length));
    return { width, height, pixels };
  }

  frame32(): Float32Array {
    const length = this.calls.frameWidth() * this.calls.frameHeight() * 4;
    return new Float32Array(this.calls.memory.buffer, this.calls.framePixels(), length).slice();
  }

  /** Why the last frame was refused, without a full stop. */
  get complaint(): string {
    return this.textAt(this.calls.complaint());
  }

  private textAt(begin: number): string {
    const bytes = new Uint8Array(this.calls.memory.buffer);
    return new TextDecoder().decode(bytes.slice(begin, bytes.indexOf(0, begin)));
  }

  private tableInPlace(): Float64Array<ArrayBuffer> {
    return new Float64Array(this.calls.memory.buffer as ArrayBuffer, this.calls.values(), this.controls.length * 4);
  }
}

// The page's state: controls and their values, what is greyed, the pictures, the time, what was done and can be undone;
// and the wishes that go to the drawing worker when any of it changes.
import { batch, computed, signal, type Signal } from "@preact/signals";
import { Drawer, type Program } from "./engine/drawer";
import { Effect, type Control, type Picture } from "./engine/effect";
import {
  defaultOf, firstPictureLayer, fromTable, hasValue, isPlace, layerNone, layerSource, parsePreparation, parseValue, preparedLayer, sameValue,
  toTable, valueText, WrongValue, type Preparation, type Value,
} from "./engine/values";
import help from "../../manual/controls.json";

export interface NamedPicture {
  name: string;
  picture: Picture;
}

/** A picture alone, or with how it is prepared (engine/values.ts). */
export type PresetLayer = string | { picture: string; [key: string]: unknown };

export interface Preset {
  about?: string;
  /** Lengths were chosen for pictures of this height, and go along with others. */
  height?: number;
  controls?: Record<string, number | boolean | string>;
  layers?: Record<string, PresetLayer>;
}

export function pictureOfLayer(layer: PresetLayer): string {
  return typeof layer === "string" ? layer : layer.picture;
}

/** The names tell which numbers are lengths in pixels: the host declares no units. */
const lengthName = /^(Dot Size|Dot Distance [XY]|(ABS |Offset )?Size \d+)$/;

/** Nine digits are far finer than any pixel, and keep 0.1 * 3 from becoming 0.30000000000000004. */
function tidied(length: number): number {
  return Number(length.toPrecision(9));
}

export interface Shown {
  picture: Picture;
  downsample: number;
  milliseconds: number;
}

/** A node of the panel: a control, or a group with what is in it. */
export interface Node {
  control: Control;
  children?: Node[];
}

const framesPerSecond = 24;
/** ms without a change after which the frame is drawn in full. */
const restTime = 160;
/** A frame while a control moves should not take longer, ms. */
const draftTime = 60;

const helpTexts = new Map<string, string>(
  help.controls.map((entry: { name: string; help: string }) => [entry.name, entry.help]),
);

export class Store {
  readonly controls: Control[];
  readonly tree: Node[];
  readonly values: Signal<Value>[];
  readonly greyed: Signal<boolean>[];
  readonly source = signal<NamedPicture | undefined>(undefined);
  /** By slot, from 1. */
  readonly layers = signal<Map<number, NamedPicture>>(new Map());
  readonly frame = signal(0);
  readonly shown = signal<Shown | undefined>(undefined);
  /** 0 to 1 while a frame takes long, undefined otherwise. */
  readonly progress = signal<number | undefined>(undefined);
  readonly message = signal("");
  readonly canUndo = signal(false);
  readonly canRedo = signal(false);
  readonly changedCount = computed(() => this.controls.filter((_, i) => this.isChanged(i)).length);
  readonly drawer: Drawer;
  /** What the drawing workers need, loaded once. */
  readonly program: Program;

  /** When the first frame was on its way to the screen, ms after the page was asked for; for the tests. */
  firstPicture = 0;

  /** Why the last frame was not drawn; gone from the page with the next one that is. */
  private refusal = "";
  /** The picture that was shown before; its memory goes back to the worker. */
  private retired?: Picture;
  private readonly kept = new WeakSet<Picture>();
  private readonly rules: Effect;
  private readonly defaults: Value[];
  private past: Value[][] = [];
  private future: Value[][] = [];
  private gesture = "";
  private gestureTime = 0;
  private rest?: ReturnType<typeof setTimeout>;
  private pixelsPerMillisecond = 20_000;
  private waiting: { ticket: number; done: (shown: Shown) => void; refuse: (why: Error) => void }[] = [];

  constructor(program: Program) {
    this.program = program;
    this.rules = new Effect(program.module);
    this.controls = this.rules.controls;
    this.defaults = this.controls.map(defaultOf);
    this.values = this.defaults.map((value) => signal(value));
    const greyed = this.rules.greyed;
    this.greyed = this.controls.map((_, i) => signal(greyed[i] === 1));
    this.tree = treeOf(this.controls);
    this.drawer = new Drawer(program);
    this.drawer.onProgress = (share) => (this.progress.value = share);
    this.drawer.onTrouble = (text) => this.tell(text);
    this.drawer.onRefused = (text, ticket) => {
      this.refusal = `${text}.`;
      this.tell(this.refusal);
      for (const { refuse } of this.takeWaiting(ticket)) refuse(new WrongValue(this.refusal));
    };
    this.drawer.onDrawn = ({ job, picture, milliseconds }) => {
      this.pixelsPerMillisecond = (picture.width * picture.height) / Math.max(milliseconds, 1);
      const shown = { picture, downsample: job.downsample, milliseconds };
      // One frame late, so that whatever still paints the last one has it.
      if (this.retired && !this.kept.has(this.retired)) this.drawer.giveBack(this.retired);
      this.retired = this.shown.peek()?.picture;
      batch(() => {
        this.progress.value = undefined;
        this.shown.value = shown;
        if (this.refusal !== "" && this.message.peek() === this.refusal) this.tell("");
      });
      this.firstPicture ||= performance.now();
      if (job.draft) return;
      for (const { done } of this.takeWaiting(job.ticket)) done(shown);
    };
  }

  // --- values -------------------------------------------------------------------------------------------------------

  get allValues(): Value[] {
    return this.values.map((value) => value.peek());
  }

  isChanged(i: number): boolean {
    return hasValue(this.controls[i]) && !sameValue(this.values[i].value, this.defaults[i]);
  }

  /**
   * The user sets one control; the effect's own rules may change others.
   * @param gesture  changes of the same gesture (a slider that is dragged) are undone in one go; empty: a step of its own
   */
  set(index: number, value: Value, gesture = ""): void {
    if (sameValue(this.values[index - 1].peek(), value)) return;
    this.remember(gesture === "" ? "" : `${index}:${gesture}`);
    const values = this.allValues;
    values[index - 1] = value;
    this.apply(values, index);
    this.wishDraft();
  }

  /** Many at once, as one step. */
  setAll(values: Value[]): void {
    this.remember("");
    this.apply(values, 0);
    this.wishFull();
  }

  reset(indices: number[]): void {
    const values = this.allValues;
    for (const index of indices) values[index - 1] = this.defaults[index - 1];
    if (values.every((value, i) => sameValue(value, this.values[i].peek()))) return;
    this.setAll(values);
  }

  undo(): void {
    this.step(this.past, this.future);
  }

  redo(): void {
    this.step(this.future, this.past);
  }

  private step(from: Value[][], to: Value[][]): void {
    const values = from.pop();
    if (!values) return;
    to.push(this.allValues);
    this.gesture = "";
    this.apply(values, 0);
    this.tellHistory();
    this.wishFull();
  }

  private remember(gesture: string): void {
    const now = performance.now();
    const goesOn = gesture !== "" && gesture === this.gesture && now - this.gestureTime < 1000;
    this.gesture = gesture;
    this.gestureTime = now;
    if (goesOn) return;
    this.past.push(this.allValues);
    if (this.past.length > 500) this.past.shift();
    this.future = [];
    this.tellHistory();
  }

  private tellHistory(): void {
    this.canUndo.value = this.past.length > 0;
    this.canRedo.value = this.future.length > 0;
  }

  private apply(values: Value[], index: number): void {
    this.rules.table = toTable(this.controls, values);
    this.rules.changed(index);
    const ruled = index === 0 ? values : fromTable(this.controls, this.rules.table, values);
    const greyed = this.rules.greyed;
    batch(() => {
      ruled.forEach((value, i) => {
        if (!sameValue(value, this.values[i].peek())) this.values[i].value = value;
        this.greyed[i].value = greyed[i] === 1;
      });
    });
  }

  // --- pictures -----------------------------------------------------------------------------------------------------

  takeSource(named: NamedPicture): void {
    this.source.value = named;
    this.shown.value = undefined;
    this.drawer.takePicture(0, named.picture);
    this.wishFull();
  }

  /** The value for a layer control that shows this picture. */
  addLayer(named: NamedPicture): number {
    const slot = this.layers.value.size + 1;
    this.layers.value = new Map(this.layers.value).set(slot, named);
    this.drawer.takePicture(slot, named.picture);
    return firstPictureLayer + slot;
  }

  layerName(layer: number): string {
    return this.layers.value.get(layer - firstPictureLayer)?.name ?? "picture.png";
  }

  // --- time ---------------------------------------------------------------------------------------------------------

  setFrame(frame: number): void {
    if (frame === this.frame.peek()) return;
    this.frame.value = frame;
    this.wishDraft();
  }

  // --- presets ------------------------------------------------------------------------------------------------------

  /**
   * The values of a preset over the defaults; lengths go along with the height of the picture (the page's own when left
   * out), as by the command line. Throws WrongValue for what doesn't fit.
   */
  valuesOf(preset: Preset, height = this.source.peek()?.picture.height): Value[] {
    const factor = preset.height && height ? height / preset.height : 1;
    const values = this.defaults.map((value, i) => this.scaledDefault(this.controls[i], value, factor));
    const find = (name: string): Control => {
      const named = this.controls.filter(hasValue);
      const control =
        named.find((c) => c.name === name) ?? named.find((c) => c.name.toLowerCase() === name.toLowerCase());
      if (!control) throw new WrongValue(`There is no control "${name}".`);
      return control;
    };
    for (const [name, value] of Object.entries(preset.controls ?? {})) {
      const control = find(name);
      values[control.index - 1] = this.scaled(control, parseValue(control, String(value)), factor);
    }
    for (const [name, layer] of Object.entries(preset.layers ?? {})) {
      const text = pictureOfLayer(layer);
      const control = find(name);
      if (control.kind !== "layer") throw new WrongValue(`"${control.name}" is no layer.`);
      const number = text === "none" ? layerNone : text === "source" ? layerSource : this.layerNamed(text);
      values[control.index - 1] = preparedLayer(number, scaledPreparation(layer, factor));
    }
    return values;
  }

  private scaledDefault(control: Control, value: Value, factor: number): Value {
    if (typeof value !== "number" || !lengthName.test(control.name) || factor === 1) return value;
    const [least, greatest] = control.valid ?? [-Infinity, Infinity];
    return Math.min(greatest, Math.max(least, tidied(value * factor)));
  }

  private scaled(control: Control, value: Value, factor: number): Value {
    if (factor === 1) return value;
    if (isPlace(value) && !value.percent) {
      return { x: tidied(value.x * factor), y: tidied(value.y * factor), percent: false };
    }
    if (typeof value !== "number" || !lengthName.test(control.name)) return value;
    const length = tidied(value * factor);
    const [least, greatest] = control.valid ?? [-Infinity, Infinity];
    if (length >= least && length <= greatest) return length;
    throw new WrongValue(`"${control.name}" would be ${length} at this picture's height, and takes ${least} to ${greatest}.`);
  }

  private layerNamed(name: string): number {
    for (const [slot, named] of this.layers.value) if (named.name === name) return firstPictureLayer + slot;
    throw new WrongValue(`It needs the picture "${name}": add it to a layer first.`);
  }

  /** What is in the group that this control begins. */
  groupOf(index: number): Node[] {
    const find = (nodes: Node[]): Node[] | undefined => {
      for (const { control, children } of nodes) {
        if (control.index === index) return children;
        const inside = children && find(children);
        if (inside) return inside;
      }
      return undefined;
    };
    return find(this.tree) ?? [];
  }

  text(i: number): string {
    return valueText(this.controls[i], this.values[i].peek(), (layer) => this.layerName(layer));
  }

  // --- drawing ------------------------------------------------------------------------------------------------------

  /** The picture's pixels stay, whatever is drawn later. */
  keep(picture: Picture): void {
    this.kept.add(picture);
  }

  /** The frame in full of what is set now, as soon as it is drawn. Its pixels go when two others were; see keep(). */
  drawnInFull(): Promise<Shown> {
    return new Promise((done, refuse) => {
      this.waiting.push({ ticket: this.wishFull(), done, refuse });
    });
  }

  /** Those who wait for this frame; one that was under way before they asked is not what they asked for. */
  private takeWaiting(ticket: number): Store["waiting"] {
    const served = this.waiting.filter((one) => one.ticket <= ticket);
    this.waiting = this.waiting.filter((one) => one.ticket > ticket);
    return served;
  }

  private wishDraft(): void {
    clearTimeout(this.rest);
    const downsample = this.draftSize();
    if (downsample === 1) {
      this.wishFull();
      return;
    }
    this.wish(downsample, true);
    this.rest = setTimeout(() => this.wishFull(), restTime);
  }

  private wishFull(): number {
    clearTimeout(this.rest);
    return this.wish(1, false);
  }

  private draftSize(): 1 | 2 | 4 {
    const picture = this.source.peek()?.picture;
    if (!picture) return 1;
    const pixels = picture.width * picture.height;
    for (const downsample of [1, 2] as const) {
      if (pixels / downsample ** 2 / this.pixelsPerMillisecond < draftTime) return downsample;
    }
    return 4;
  }

  /** @returns the ticket of the frame; without a picture it waits for that */
  private wish(downsample: 1 | 2 | 4, draft: boolean): number {
    if (!this.source.peek()) return 0;
    return this.drawer.draw({
      table: toTable(this.controls, this.allValues),
      downsample,
      time: { frame: this.frame.peek(), step: 1, scale: framesPerSecond },
      draft,
    });
  }

  tell(text: string): void {
    this.message.value = text;
  }

  helpOf(control: Control): string {
    const name = /[1-3]$/.test(control.name) ? control.name.slice(0, -1).trimEnd() + " #" : control.name;
    return helpTexts.get(name) ?? "";
  }
}

/** What a preset asks for a layer; pixels of a blur go along with the height like all lengths. */
function scaledPreparation(layer: PresetLayer, factor: number): Preparation {
  if (typeof layer === "string") return {};
  const { picture: _, ...keys } = layer;
  const preparation = parsePreparation(keys);
  if (typeof preparation.blur === "number") preparation.blur *= factor;
  return preparation;
}

function treeOf(controls: Control[]): Node[] {
  const root: Node[] = [];
  const open: Node[][] = [root];
  for (const control of controls) {
    if (control.kind === "end of group") {
      if (open.length > 1) open.pop();
    } else if (control.kind === "group") {
      const group: Node = { control, children: [] };
      open[open.length - 1].push(group);
      open.push(group.children!);
    } else {
      open[open.length - 1].push({ control });
    }
  }
  return root;
}

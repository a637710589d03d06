// Values of controls as the page holds them, as the effect's table has them, and as people write them: in presets, on
// the command line and in links. Texts mean what they mean to `vindrel`.
import type { Control } from "./effect";

export interface Place {
  x: number;
  y: number;
  /** x and y are percent of the layer, otherwise pixels at full size. */
  percent: boolean;
}

/** How a layer's picture is prepared on its way to the effect, in the command line's words; what is left out isn't done. */
export interface Preparation {
  fit?: "stretch" | "cover";
  /** "pitch", or the side of a square in pixels. */
  blur?: "pitch" | number;
  tone?: "area" | "light";
}

/** A layer's picture that is prepared; `layer` is a number as in the table. */
export interface PreparedLayer extends Preparation {
  layer: number;
}

const fits = ["stretch", "cover"] as const;
const tones = ["area", "light"] as const;
/** Pixels. */
const mostBlur = 10_000;

/**
 * Slider, angle (degrees), choice (item from 1): a number. Check box: a boolean. Colour: "#rrggbb". Layer: a number as in
 * the table, 0 none, 1 the picture itself, 2 + n the picture of slot n; or that with how it is prepared. Groups: undefined.
 */
export type Value = number | boolean | string | Place | PreparedLayer | undefined;

export const layerNone = 0;
export const layerSource = 1;
export const firstPictureLayer = 2;

export function hasValue(control: Control): boolean {
  return control.kind !== "group" && control.kind !== "end of group" && control.kind !== "other";
}

export function isSeparator(item: string): boolean {
  return item === "(-";
}

export function isPlace(value: Value): value is Place {
  return typeof value === "object" && "x" in value;
}

export function isPrepared(value: Value): value is PreparedLayer {
  return typeof value === "object" && "layer" in value;
}

/** The number of a layer's value as in the table, however it is prepared. */
export function layerOf(value: Value): number {
  return isPrepared(value) ? value.layer : Number(value);
}

/** A layer's value; without anything to prepare it is the number alone. */
export function preparedLayer(layer: number, { fit, blur, tone }: Preparation): number | PreparedLayer {
  const isPlain = fit === undefined && blur === undefined && tone === undefined;
  return isPlain ? layer : { layer, fit, blur, tone };
}

export function sameValue(a: Value, b: Value): boolean {
  if (isPlace(a) && isPlace(b)) return a.x === b.x && a.y === b.y && a.percent === b.percent;
  if (isPrepared(a) && isPrepared(b)) {
    return a.layer === b.layer && a.fit === b.fit && a.blur === b.blur && a.tone === b.tone;
  }
  return a === b;
}

export function defaultOf(control: Control): Value {
  const value = control.default;
  if (Array.isArray(value)) return { x: value[0], y: value[1], percent: true };
  if (control.kind === "layer") return value === "source" ? layerSource : layerNone;
  return value;
}

export function toTable(controls: Control[], values: Value[]): Float64Array<ArrayBuffer> {
  const table = new Float64Array(controls.length * 4);
  controls.forEach((control, i) => {
    const value = values[i];
    const at = i * 4;
    if (typeof value === "number") table[at] = value;
    else if (typeof value === "boolean") table[at] = value ? 1 : 0;
    else if (isPlace(value)) table.set([value.x, value.y, value.percent ? 1 : 0], at);
    else if (isPrepared(value)) {
      const { layer, fit, blur, tone } = value;
      const places = [fit ? fits.indexOf(fit) + 1 : 0, blur === "pitch" ? -1 : (blur ?? 0), tone ? tones.indexOf(tone) + 1 : 0];
      table.set([layer, ...places], at);
    }
    else if (control.kind === "colour" && value !== undefined) {
      for (let c = 0; c < 3; ++c) table[at + c] = parseInt(value.slice(1 + 2 * c, 3 + 2 * c), 16);
    }
  });
  return table;
}

/** Layers are kept as they were: the effect never changes them. */
export function fromTable(controls: Control[], table: Float64Array, before?: Value[]): Value[] {
  return controls.map((control, i) => {
    const [a, b, c] = table.subarray(i * 4, i * 4 + 3);
    switch (control.kind) {
      case "check box":
        return a !== 0;
      case "colour":
        return "#" + [a, b, c].map((channel) => channel.toString(16).padStart(2, "0")).join("");
      case "place":
        return { x: a, y: b, percent: c !== 0 };
      case "layer":
        return before ? before[i] : a;
      default:
        return hasValue(control) ? a : undefined;
    }
  });
}

// --- texts ----------------------------------------------------------------------------------------------------------

export class WrongValue extends Error {}

// Angles and places travel as 16.16 numbers; nothing at or beyond this fits.
const fixedLimit = 32768;
const percentLimit = (100 * fixedLimit) / 30000;

function readNumber(text: string): number | undefined {
  const trimmed = text.trim();
  if (!/^[+-]?(\d+\.?\d*|\.\d+)([eE][+-]?\d+)?$/.test(trimmed)) return undefined;
  const number = Number(trimmed);
  return Number.isFinite(number) ? number : undefined;
}

function withoutEnding(text: string, ...endings: string[]): string {
  const trimmed = text.trim();
  const ending = endings.find((e) => trimmed.endsWith(e));
  return ending === undefined ? trimmed : trimmed.slice(0, trimmed.length - ending.length).trim();
}

function readPlace(text: string): Place | undefined {
  const parts = text.split(",");
  if (parts.length !== 2) return undefined;
  const percents = parts.map((part) => part.trim().endsWith("%"));
  if (percents[0] !== percents[1]) return undefined;
  const [x, y] = parts.map((part) => readNumber(withoutEnding(part, "%")));
  const limit = percents[0] ? percentLimit : fixedLimit;
  if (x === undefined || y === undefined || Math.abs(x) >= limit || Math.abs(y) >= limit) return undefined;
  return { x, y, percent: percents[0] };
}

function readColor(text: string): string | undefined {
  const trimmed = text.trim().toLowerCase();
  if (/^#[0-9a-f]{6}$/.test(trimmed)) return trimmed;
  if (/^#[0-9a-f]{3}$/.test(trimmed)) return "#" + [...trimmed.slice(1)].map((digit) => digit + digit).join("");
  return undefined;
}

function readChoice(control: Control, text: string): number | undefined {
  const items = control.choices ?? [];
  const wanted = text.trim().toLowerCase();
  const found = items.findIndex((item) => !isSeparator(item) && item.toLowerCase() === wanted);
  if (found >= 0) return found + 1;
  const number = readNumber(text);
  if (number === undefined || !Number.isInteger(number) || number < 1 || number > items.length) return undefined;
  return isSeparator(items[number - 1]) ? undefined : number;
}

const switches: Record<string, boolean> = {
  on: true, true: true, yes: true, 1: true, off: false, false: false, no: false, 0: false,
};

/** What the control takes, in words. */
export function expectation(control: Control): string {
  const range = control.valid ? ` from ${control.valid[0]} to ${control.valid[1]}` : "";
  switch (control.kind) {
    case "whole number":
      return `a whole number${range}`;
    case "number":
      return `${control.percent ? "percent" : "a number"}${range}`;
    case "angle":
      return "an angle in degrees, between -32768 and 32768";
    case "check box":
      return "on or off";
    case "colour":
      return "a colour such as #ff7d14";
    case "place":
      return "a place such as 50%,50% or 300,200";
    case "choice":
      return `one of ${(control.choices ?? []).filter((item) => !isSeparator(item)).join(", ")}`;
    default:
      return "no text";
  }
}

/** Reads a text as the command line does. Throws WrongValue with one line for what doesn't fit, layers and groups too. */
export function parseValue(control: Control, text: string): Value {
  const value = readValue(control, text);
  if (value === undefined) throw new WrongValue(`"${control.name}" takes ${expectation(control)}, not "${text}"`);
  return value;
}

function readValue(control: Control, text: string): Value {
  switch (control.kind) {
    case "number":
    case "whole number": {
      const number = readNumber(control.percent ? withoutEnding(text, "%") : text);
      const [least, greatest] = control.valid ?? [-Infinity, Infinity];
      if (number === undefined || number < least || number > greatest) return undefined;
      return control.kind === "whole number" && !Number.isInteger(number) ? undefined : number;
    }
    case "angle": {
      const degrees = readNumber(withoutEnding(text, "°", "deg"));
      return degrees === undefined || Math.abs(degrees) >= fixedLimit ? undefined : degrees;
    }
    case "check box":
      return switches[text.trim().toLowerCase()];
    case "colour":
      return readColor(text);
    case "place":
      return readPlace(text);
    case "choice":
      return readChoice(control, text);
    default:
      return undefined;
  }
}

/** The keys of a preset's layer, or of what stands behind the ':' of --layer. Throws WrongValue for what doesn't fit. */
export function parsePreparation(keys: Record<string, unknown>): Preparation {
  const preparation: Preparation = {};
  for (const [key, value] of Object.entries(keys)) {
    const text = String(value);
    if (key === "fit") preparation.fit = oneOf(fits, key, text);
    else if (key === "tone") preparation.tone = oneOf(tones, key, text);
    else if (key === "blur" && text === "pitch") preparation.blur = "pitch";
    else if (key === "blur") {
      const pixels = readNumber(text);
      if (pixels === undefined || pixels <= 0 || pixels > mostBlur) {
        throw new WrongValue(`"blur" takes pitch, or pixels above 0 up to ${mostBlur}, not "${text}"`);
      }
      preparation.blur = pixels;
    } else throw new WrongValue(`A layer can't be prepared by "${key}"; it takes fit, blur or tone.`);
  }
  return preparation;
}

function oneOf<Name extends string>(names: readonly Name[], key: string, text: string): Name {
  const found = names.find((name) => name === text);
  if (!found) throw new WrongValue(`"${key}" takes ${names.join(" or ")}, not "${text}"`);
  return found;
}

/** "blur=pitch,tone=area", as behind the ':' of --layer. */
export function preparationText({ fit, blur, tone }: Preparation): string {
  const parts = [fit && `fit=${fit}`, blur && `blur=${typeof blur === "number" ? numberText(blur) : blur}`, tone && `tone=${tone}`];
  return parts.filter(Boolean).join(",");
}

/** What preparationText wrote. */
export function readPreparation(text: string): Preparation {
  const pairs = text.split(",").filter(Boolean).map((part) => part.split("=", 2) as [string, string]);
  return parsePreparation(Object.fromEntries(pairs));
}

/** "none", "source" or the picture's name. */
export function layerText(layer: number, pictureName: (layer: number) => string): string {
  return layer === layerNone ? "none" : layer === layerSource ? "source" : pictureName(layer);
}

/** The shortest decimal that reads back as the same number, without an exponent. */
export function numberText(number: number): string {
  const text = String(number === 0 ? 0 : number);
  const parts = /^(-?)(\d+)(?:\.(\d+))?e([+-]\d+)$/.exec(text);
  if (!parts) return text;
  const [, sign, whole, fraction = "", exponent] = parts;
  const power = Number(exponent);
  const digits = whole + fraction;
  if (power < 0) return `${sign}0.${"0".repeat(-power - 1)}${digits}`;
  return sign + digits.padEnd(power + 1, "0");
}

/** As it is written in presets and after --set; a layer's picture by the name that the call gives. */
export function valueText(control: Control, value: Value, pictureName: (layer: number) => string): string {
  if (value === undefined) return "";
  if (isPrepared(value)) return `${layerText(value.layer, pictureName)}:${preparationText(value)}`;
  if (isPlace(value)) {
    const unit = value.percent ? "%" : "";
    return `${numberText(value.x)}${unit}, ${numberText(value.y)}${unit}`;
  }
  if (typeof value === "boolean") return value ? "on" : "off";
  if (typeof value === "string") return value;
  if (control.kind === "layer") return layerText(layerOf(value), pictureName);
  if (control.kind === "choice") return control.choices?.[value - 1] ?? String(value);
  return numberText(value) + (control.kind === "angle" ? "°" : control.percent ? "%" : "");
}

// What the tests share: the module, the native command line, golden scenes.
import { execFileSync } from "node:child_process";
import { mkdtempSync, readFileSync, readdirSync } from "node:fs";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { inflateSync } from "node:zlib";
import { Effect, type Picture } from "../src/engine/effect";
import { defaultOf, layerNone, layerSource, firstPictureLayer, parseValue, toTable, type Value } from "../src/engine/values";
import { readPng } from "../src/engine/png";

export const root = process.env.VINDREL_ROOT ?? "";
if (!root) throw new Error("VINDREL_ROOT must name the folder of the tree");

export const moduleBytes = readFileSync(join(root, "build/wasm/vindrel_studio.wasm"));
export const scratch = mkdtempSync(join(tmpdir(), "vindrel-studio-"));

export function newEffect(): Effect {
  return new Effect(new WebAssembly.Module(moduleBytes));
}

export function vindrel(...words: string[]): string {
  return execFileSync(join(root, "build/linux/vindrel"), words, { encoding: "utf8", cwd: root });
}

export function bytesOf(file: string): Uint8Array<ArrayBuffer> {
  return new Uint8Array(readFileSync(file));
}

export async function pngPicture(file: string): Promise<Picture> {
  const picture = await readPng(bytesOf(file));
  if (!picture) throw new Error(`${file} is no plain PNG`);
  return picture;
}

/** Pixels of a float TIFF as the command line writes it: red, green, blue, alpha. */
export function tiffFloats(file: string): Float32Array {
  const bytes = bytesOf(file);
  const view = new DataView(bytes.buffer);
  const little = view.getUint16(0) === 0x4949;
  const short = (at: number): number => view.getUint16(at, little);
  const long = (at: number): number => view.getUint32(at, little);
  const tags = new Map<number, number[]>();
  let at = long(4);
  for (let n = short(at), i = 0; i < n; ++i) {
    const entry = at + 2 + 12 * i;
    const size = short(entry + 2) === 3 ? 2 : 4;
    const count = long(entry + 4);
    const place = count * size > 4 ? long(entry + 8) : entry + 8;
    tags.set(short(entry), Array.from({ length: count }, (_, k) => (size === 2 ? short : long)(place + k * size)));
  }
  at = 0;
  if (tags.get(258)![0] !== 32 || tags.get(277)![0] !== 4) throw new Error("no float RGBA");
  const predictor = tags.get(317)?.[0] ?? 1;
  const compression = tags.get(259)![0];
  if (predictor !== 3 || compression !== 8) throw new Error(`compression ${compression}, predictor ${predictor}`);
  const offsets = tags.get(273)!;
  const lengths = tags.get(279)!;
  const strips = offsets.map((offset, i) => inflateSync(bytes.subarray(offset, offset + lengths[i])));
  const all = new Uint8Array(Buffer.concat(strips));
  const floats = new DataView(new ArrayBuffer(all.length));
  const rowFloats = tags.get(256)![0] * 4;
  for (let row = 0; row < all.length; row += rowFloats * 4) {
    // Each byte is told by its difference from the one four before; a row holds all first bytes, then all second ones.
    for (let i = 4; i < rowFloats * 4; ++i) all[row + i] += all[row + i - 4];
    for (let i = 0; i < rowFloats * 4; ++i) {
      floats.setUint8(row + (i % rowFloats) * 4 + Math.floor(i / rowFloats), all[row + i]);
    }
  }
  return Float32Array.from({ length: all.length / 4 }, (_, i) => floats.getFloat32(i * 4));
}

export interface Panel {
  scene: string;
  input: string;
  frame: number;
  fps: number;
  downsample: number;
  sets: [string, string][];
  layers: [string, string][];
}

/** The panels of a golden scene; tests/golden/Scene.h tells the form. */
export function panelsOf(scene: string): Panel[] {
  const lines = readFileSync(join(root, "tests/golden/scenes", scene, "scene.txt"), "utf8").split("\n");
  const common: Panel = { scene, input: "", frame: 0, fps: 30, downsample: 1, sets: [], layers: [] };
  const panels: Panel[] = [];
  const assign = (panel: Panel, text: string): void => {
    const words = text.trim();
    if (words === "") return;
    const [name, value] = words.split("=").map((part) => part.trim());
    if (words.startsWith("downsample ")) panel.downsample = Number(words.slice(11));
    else if (words.startsWith("layer ")) {
      panel.layers = panel.layers.filter(([other]) => other !== name.slice(6)).concat([[name.slice(6), value]]);
    } else panel.sets.push([name, value]);
  };
  const later: string[] = [];
  for (const line of lines) {
    const words = line.replace(/(^|\s)#.*$/, (comment) => (/#[0-9a-f]{6}/i.test(comment) ? comment : "")).trim();
    const [directive] = words.split(/\s/, 1);
    const rest = words.slice(directive.length).trim();
    if (directive === "input") common.input = rest;
    else if (directive === "set") assign(common, rest);
    else if (directive === "layer") assign(common, words);
    else if (directive === "frame") [common.frame, common.fps] = rest.split(/\s+/).map(Number);
    else if (directive === "panel") later.push(rest);
    else if (!["", "columns", "float-tolerance"].includes(directive)) throw new Error(`${scene}: ${line}`);
  }
  for (const text of later.length > 0 ? later : [""]) {
    const panel: Panel = { ...common, sets: [...common.sets], layers: [...common.layers] };
    for (const part of text.split(";")) assign(panel, part);
    panels.push(panel);
  }
  return panels;
}

export const scenes = readdirSync(join(root, "tests/golden/scenes")).sort();
export const inputOf = (name: string): string => join(root, "tests/golden/inputs", name);

/** Gives the effect the panel's values and pictures. */
export async function setUp(effect: Effect, panel: Panel): Promise<void> {
  const values: Value[] = effect.controls.map(defaultOf);
  for (const [name, text] of panel.sets) {
    const control = effect.controls.find((c) => c.name === name && c.kind !== "end of group");
    if (!control) throw new Error(`no control ${name}`);
    values[control.index - 1] = parseValue(control, text);
  }
  let slot = 1;
  for (const [name, file] of panel.layers) {
    const control = effect.controls.find((c) => c.name === name)!;
    if (file === "none" || file === "source") {
      values[control.index - 1] = file === "none" ? layerNone : layerSource;
    } else {
      effect.takePicture(slot, await pngPicture(inputOf(file)));
      values[control.index - 1] = firstPictureLayer + slot;
      slot += 1;
    }
  }
  effect.takePicture(0, await pngPicture(inputOf(panel.input)));
  effect.table = toTable(effect.controls, values);
}

/** The same panel by the command line; 8 bits as PNG, float as TIFF. */
export function renderNatively(panel: Panel, depth: 8 | 32): string {
  const out = join(scratch, depth === 8 ? "native.png" : "native.tif");
  vindrel(
    "render", inputOf(panel.input), out, "--depth", String(depth), "--downsample", String(panel.downsample),
    "--frame", String(panel.frame), "--fps", String(panel.fps),
    ...panel.sets.flatMap(([name, value]) => ["--set", `${name}=${value}`]),
    ...panel.layers.flatMap(([name, file]) => [
      "--layer", `${name}=${file === "none" || file === "source" ? file : inputOf(file)}`,
    ]),
  );
  return out;
}

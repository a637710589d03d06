// The module in WebAssembly against the native one, through the native command line.
import assert from "node:assert/strict";
import { readdirSync, readFileSync } from "node:fs";
import { join } from "node:path";
import { test } from "node:test";
import type { Control } from "../src/engine/effect";
import { defaultOf, fromTable, numberText, parseValue, toTable, valueText, WrongValue } from "../src/engine/values";
import { readPng, writePng } from "../src/engine/png";
import {
  bytesOf, newEffect, panelsOf, pngPicture, inputOf, renderNatively, root, scenes, setUp, tiffFloats, vindrel,
} from "./support";

interface NativeFacts {
  index: number;
  id: number;
  name: string;
  kind: string;
  valid?: [number, number];
  slider?: [number, number];
  default?: number | boolean | string;
  precision?: number;
  percent?: boolean;
  choices?: string[];
  choiceCount?: number;
  flags: number;
  uiFlags: number;
  value?: string;
  greyed?: boolean;
}

const nativeControls = (...words: string[]): NativeFacts[] =>
  JSON.parse(vindrel("controls", "--json", ...words)) as NativeFacts[];

const round = (n: number): number => Math.fround(n);

test("every control has the native table's facts", () => {
  const { controls } = newEffect();
  const native = nativeControls();
  assert.equal(controls.length, 122);
  assert.equal(native.length, 122);
  controls.forEach((control: Control, i) => {
    const facts = native[i];
    for (const key of ["index", "id", "name", "kind", "flags", "uiFlags", "precision", "percent", "choiceCount"] as const) {
      assert.equal(control[key], facts[key], `${facts.name}: ${key}`);
    }
    assert.deepEqual(control.choices, facts.choices);
    assert.deepEqual(control.valid?.map(round), facts.valid?.map(round));
    assert.deepEqual(control.slider?.map(round), facts.slider?.map(round));
    const shown = valueText(control, defaultOf(control), () => "");
    const plain = ["number", "angle", "whole number"].includes(control.kind);
    if (plain) assert.equal(control.default, facts.default, control.name);
    else if (control.kind === "choice") assert.equal(control.default, facts.default, control.name);
    else if (control.kind === "check box") assert.equal(control.default, facts.default, control.name);
    else assert.equal(shown, facts.default ?? "", control.name);
  });
});

test("the golden scenes are the native ones, pixel for pixel, at 8 bits and in float", async () => {
  assert.ok(scenes.length >= 20);
  let panels = 0;
  let pixels = 0;
  const lastBits = { pixels: 0, differing: 0, largest: 0 };
  for (const scene of scenes) {
    for (const panel of panelsOf(scene)) {
      panels += 1;
      const effect = newEffect();
      await setUp(effect, panel);
      const time = { frame: panel.frame, step: 1, scale: panel.fps };
      // The C library's last bit may show in this shape alone.
      const isRoundSquare = panel.sets.some(([name, value]) => name === "Dot Shape" && value === "Round Square");
      assert.equal(effect.draw(panel.downsample, 8, time), 0);
      const mine = effect.frame8();
      const native = await pngPicture(renderNatively(panel, 8));
      assert.equal(effect.draw(panel.downsample, 32, time), 0);
      const myFloats = effect.frame32();
      const nativeFloats = tiffFloats(renderNatively(panel, 32));
      const what = `${scene}: ${JSON.stringify(panel.sets)}`;
      assert.deepEqual([mine.width, mine.height], [native.width, native.height], what);
      assert.equal(myFloats.length, nativeFloats.length, what);
      pixels += mine.width * mine.height;
      for (const [a, b, full] of [[mine.pixels, native.pixels, 255], [myFloats, nativeFloats, 1]] as const) {
        for (let i = 0; i < b.length; i += 4) {
          const largest = Math.max(...[0, 1, 2, 3].map((c) => Math.abs(a[i + c] - b[i + c]))) / full;
          if (isRoundSquare) {
            lastBits.pixels += 1;
            if (largest > 0) lastBits.differing += 1;
            lastBits.largest = Math.max(lastBits.largest, largest);
          } else if (largest !== 0) {
            assert.fail(`${what}: pixel ${i / 4} differs by ${largest} of full scale`);
          }
        }
      }
    }
  }
  console.log(`${scenes.length} scenes, ${panels} panels, ${pixels} pixels at each depth are the native ones`);
  console.log(`"Round Square": ${lastBits.differing} of ${lastBits.pixels} pixels differ, at most by ${lastBits.largest} of full scale`);
  // One of the 64 samples of a pixel, now and then.
  assert.ok(lastBits.pixels > 0 && lastBits.differing / lastBits.pixels < 0.01 && lastBits.largest < 0.06);
});

test("presets give the same values and greyed controls as the command line", () => {
  const folder = join(root, "presets");
  let seen = 0;
  for (const file of readdirSync(folder).filter((name) => name.endsWith(".json"))) {
    const effect = newEffect();
    const preset = JSON.parse(readFileSync(join(folder, file), "utf8")) as {
      controls?: Record<string, number | boolean | string>;
    };
    const values = effect.controls.map(defaultOf);
    for (const [name, value] of Object.entries(preset.controls ?? {})) {
      const control = effect.controls.find((c) => c.name === name && c.kind !== "end of group")!;
      values[control.index - 1] = parseValue(control, String(value));
    }
    effect.table = toTable(effect.controls, values);
    effect.changed(0);
    const greyed = effect.greyed;
    nativeControls("--preset", join(folder, file)).forEach((facts, i) => {
      const control = effect.controls[i];
      assert.equal(greyed[i] === 1, facts.greyed, `${file}: ${facts.name}`);
      if (control.kind === "layer" || facts.value === undefined) return;
      assert.equal(valueText(control, values[i], () => ""), facts.value, `${file}: ${facts.name}`);
      seen += 1;
    });
  }
  assert.ok(seen > 800);
});

test("texts are taken and refused as on the command line", () => {
  const effect = newEffect();
  const tries: Record<string, string[]> = {
    "Dot Size": ["14", "14.5", " 1e1 ", "+3", ".5", "5.", "-1", "1001", "", "12px", "0x10", "1,5", "+-3", "nan", "inf"],
    "Dot Aspect": ["40%", "40 %", "-100", "101", "%"],
    "Dot Rotation": ["45", "45°", "45deg", "-720.5", "32768", "-32767.9", "45 turns"],
    "Random Seed": ["7", "7.0", "7.5", "10000", "10001"],
    "Clear Background": ["on", "TRUE", "yes", "0", "2", "maybe"],
    "Dot Color": ["#FF7D14", "#f80", "#ff7d1", "ff7d14", "#gggggg"],
    "Center Position": ["50%,50%", "300, 200", "50%,200", "1,2,3", "-20 %, 120 %", "40000,1"],
    "Dot Shape": ["star", "3", "Round square", "7", "0", "1.5", "Sta"],
  };
  for (const [name, texts] of Object.entries(tries)) {
    const control = effect.controls.find((c) => c.name === name)!;
    for (const text of texts) {
      let native: string | undefined;
      try {
        native = nativeControls("--set", `${name}=${text}`)[control.index - 1].value;
      } catch {
        native = undefined;
      }
      let mine: string | undefined;
      try {
        mine = valueText(control, parseValue(control, text), () => "");
      } catch (error) {
        assert.ok(error instanceof WrongValue);
      }
      assert.equal(mine, native, `${name}=${text}`);
    }
  }
});

test("numbers are written without an exponent and read back as they were", () => {
  for (const [number, text] of [[0, "0"], [-0, "0"], [0.1, "0.1"], [1e-7, "0.0000001"], [-1.25e-9, "-0.00000000125"],
    [1e21, "1000000000000000000000"], [1.5e22, "15000000000000000000000"]] as const) {
    assert.equal(numberText(number), text);
    assert.equal(Number(text), number === 0 ? 0 : number);
  }
});

test("a change goes through the effect's own rules", () => {
  const effect = newEffect();
  const of = (name: string): number => effect.controls.find((c) => c.name === name)!.index - 1;
  const values = effect.controls.map(defaultOf);
  // Gaps of 20 between dots of 10 are centres 30 apart.
  values[of("Distance Between")] = 2;
  effect.table = toTable(effect.controls, values);
  effect.changed(of("Distance Between") + 1);
  const after = fromTable(effect.controls, effect.table, values);
  assert.equal(after[of("Dot Distance X")], 30);
  assert.equal(after[of("Dot Distance Y")], 30);
  assert.equal(effect.greyed[of("Size 1")], 1);
  after[of("Enable Effector 1")] = true;
  effect.table = toTable(effect.controls, after);
  effect.changed(of("Enable Effector 1") + 1);
  assert.equal(effect.greyed[of("Size 1")], 0);
});

test("a frame is stopped by the progress call, and the next one is whole", async () => {
  const effect = newEffect();
  effect.takePicture(0, await pngPicture(join(root, "examples/coffee.png")));
  const time = { frame: 0, step: 1, scale: 24 };
  assert.equal(effect.draw(1, 8, time), 0);
  const whole = effect.frame8();
  let calls = 0;
  effect.onProgress = () => ++calls === 3;
  assert.notEqual(effect.draw(1, 8, time), 0);
  assert.equal(calls, 3);
  effect.onProgress = () => false;
  assert.equal(effect.draw(1, 8, time), 0);
  assert.deepEqual(effect.frame8().pixels, whole.pixels);
});

test("a PNG comes back as it was, colour under clear pixels included", async () => {
  const picture = await pngPicture(inputOf("portrait.png"));
  const again = await readPng(new Uint8Array(await (await writePng(picture)).arrayBuffer()));
  assert.deepEqual(again, picture);
  const file = bytesOf(inputOf("portrait.png"));
  await assert.rejects(readPng(file.subarray(0, file.length >> 1)), /cut off/);
  file[60] ^= 1;
  await assert.rejects(readPng(file), /damaged/);
});


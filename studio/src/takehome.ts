// What the visitor takes home: a preset, a command, a list to type from, a link.
import type { Control } from "./engine/effect";
import {
  firstPictureLayer, hasValue, isPlace, isPrepared, layerNone, layerOf, layerSource, layerText, numberText, parseValue, preparationText,
  preparedLayer, readPreparation, WrongValue, type Value,
} from "./engine/values";
import type { Node, Preset, PresetLayer, Store } from "./store";

function changed(store: Store): Control[] {
  return store.controls.filter((control) => store.isChanged(control.index - 1));
}

function presetLayer(store: Store, value: Value): PresetLayer {
  const picture = layerText(layerOf(value), (layer) => store.layerName(layer));
  if (!isPrepared(value)) return picture;
  const { layer: _, ...preparation } = value;
  return { picture, ...preparation };
}

export function presetOf(store: Store): Preset {
  const preset: Preset = { about: "Made in the Vindrel studio.", controls: {} };
  for (const control of changed(store)) {
    const value = store.values[control.index - 1].peek();
    const text = store.text(control.index - 1);
    if (control.kind === "layer") (preset.layers ??= {})[control.name] = presetLayer(store, value);
    else if (typeof value === "boolean") preset.controls![control.name] = value;
    else if (typeof value === "number" && control.kind !== "choice") preset.controls![control.name] = value;
    else preset.controls![control.name] = text;
  }
  return preset;
}

export function presetFile(store: Store): string {
  return JSON.stringify(presetOf(store), null, 2) + "\n";
}

/** For a shell of the usual kind. */
function quoted(word: string): string {
  return /^[\w./:=-]+$/.test(word) ? word : `'${word.replaceAll("'", `'\\''`)}'`;
}

export function commandOf(store: Store): string {
  const words = ["vindrel", "render", store.source.value?.name ?? "picture.png", "out.png"];
  for (const control of changed(store)) {
    words.push(control.kind === "layer" ? "--layer" : "--set", `${control.name}=${store.text(control.index - 1)}`);
  }
  if (store.frame.value !== 0) words.push("--frame", String(store.frame.value));
  return words.map(quoted).join(" ");
}

/** Places in pixels, as the host's panel shows them; what the host can't do to a layer stands apart. */
function typedText(store: Store, control: Control): string {
  const value = store.values[control.index - 1].peek();
  const picture = store.source.value?.picture;
  if (isPlace(value) && value.percent && picture) {
    return `${numberText((value.x * picture.width) / 100)}, ${numberText((value.y * picture.height) / 100)}`;
  }
  if (isPrepared(value)) {
    return `${layerText(value.layer, (layer) => store.layerName(layer))} (prepared: ${preparationText(value)})`;
  }
  return store.text(control.index - 1);
}

/** A line for each value that differs from the default, in the order of the host's panel, under its group's name. */
export function listOf(store: Store): string {
  const lines: string[] = [];
  const walk = (nodes: Node[], indent: string): void => {
    for (const { control, children } of nodes) {
      if (children) {
        const before = lines.length;
        walk(children, indent + "  ");
        if (lines.length > before) lines.splice(before, 0, `${indent}${control.name}`);
      } else if (store.isChanged(control.index - 1)) {
        lines.push(`${indent}${control.name}: ${typedText(store, control)}`);
      }
    }
  };
  walk(store.tree, "");
  return lines.length > 0 ? lines.join("\n") + "\n" : "Every control is at its default.\n";
}

/** Behind the '#' of a link: control ids, by which projects know them too, and texts. Pictures never go into a link. */
export function hashOf(store: Store): string {
  const parts = new URLSearchParams();
  for (const control of changed(store)) {
    const value = store.values[control.index - 1].peek();
    if (control.kind === "layer" && layerOf(value) >= firstPictureLayer) {
      // Whoever follows the link chooses a picture; it is prepared in the same way.
      if (isPrepared(value)) parts.append(String(control.id), `none:${preparationText(value)}`);
    } else {
      parts.append(String(control.id), store.text(control.index - 1));
    }
  }
  if (store.frame.value !== 0) parts.append("frame", String(store.frame.value));
  return parts.toString();
}

/** The values of a link over the defaults, and the frame. Throws WrongValue for what doesn't fit. */
export function fromHash(hash: string, store: Store): { values: Value[]; frame: number } {
  const values = store.valuesOf({});
  let frame = 0;
  for (const [key, text] of new URLSearchParams(hash)) {
    if (key === "frame") {
      frame = Math.min(Math.max(Math.trunc(Number(text)) || 0, 0), 10_000);
      continue;
    }
    const control = store.controls.find((c) => String(c.id) === key && hasValue(c));
    if (!control) throw new WrongValue(`There is no control ${key}.`);
    if (control.kind === "layer") {
      const [picture, preparation = ""] = text.split(":", 2);
      values[control.index - 1] = preparedLayer(picture === "source" ? layerSource : layerNone, readPreparation(preparation));
    }
    else values[control.index - 1] = parseValue(control, text);
  }
  return { values, frame };
}

// Opening pictures and presets, from wherever they come.
import { readPicture, WrongPicture } from "../engine/picture";
import type { Sample } from "../samples";
import { looks, lookPictures, type Look } from "../samples";
import { pictureOfLayer, type NamedPicture, type Preset, type Store } from "../store";

function isPresetFile(file: File): boolean {
  return file.type === "application/json" || file.name.endsWith(".json");
}

async function telling<T>(store: Store, work: () => Promise<T>): Promise<T | undefined> {
  try {
    const result = await work();
    store.tell("");
    return result;
  } catch (error) {
    store.tell(error instanceof Error ? error.message : String(error));
    return undefined;
  }
}

/** A picture becomes the one to draw on; a preset gives the controls its values. */
export async function openFile(store: Store, file: File): Promise<void> {
  await telling(store, async () => {
    if (isPresetFile(file)) {
      let preset: Preset;
      try {
        preset = JSON.parse(await file.text()) as Preset;
      } catch {
        throw new WrongPicture("This preset can't be read: it is no JSON.");
      }
      await applyPreset(store, preset);
    } else {
      store.takeSource({ name: file.name || "picture.png", picture: await readPicture(file) });
    }
  });
}

/** The layer's value that shows the picture of this file; undefined when it can't be read, which was then told. */
export function openLayer(store: Store, file: File): Promise<number | undefined> {
  return telling(store, async () =>
    store.addLayer({ name: file.name || "layer.png", picture: await readPicture(file) }),
  );
}

export async function openSample(store: Store, sample: Sample): Promise<void> {
  await telling(store, async () => store.takeSource(await sample.load()));
}

/** The pictures that the preset's layers name and that lie beside the looks become layers of the page. */
async function addLookPictures(store: Store, preset: Preset): Promise<void> {
  for (const name of Object.values(preset.layers ?? {}).map(pictureOfLayer)) {
    const isThere = [...store.layers.value.values()].some((layer: NamedPicture) => layer.name === name);
    const load = lookPictures.get(name);
    if (!isThere && load) store.addLayer(await load());
  }
}

async function applyPreset(store: Store, preset: Preset): Promise<void> {
  await addLookPictures(store, preset);
  store.setAll(store.valuesOf(preset));
}

export async function applyLook(store: Store, look: Look): Promise<void> {
  await telling(store, () => applyPreset(store, look.preset));
}

/** Called while the page loads, so that nothing is fetched later. */
export async function loadLookPictures(store: Store): Promise<void> {
  for (const look of looks) await addLookPictures(store, look.preset);
}

/** Lets the browser ask for a file. */
export function chooseFile(accept: string, take: (file: File) => void): void {
  const input = document.createElement("input");
  input.type = "file";
  input.accept = accept;
  input.onchange = () => {
    const file = input.files?.[0];
    if (file) take(file);
  };
  input.click();
}

export function save(name: string, blob: Blob): void {
  const link = document.createElement("a");
  link.href = URL.createObjectURL(blob);
  link.download = name;
  link.click();
  setTimeout(() => URL.revokeObjectURL(link.href), 10_000);
}

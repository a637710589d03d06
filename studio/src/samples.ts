// The photographs to start with, and the looks. All of it is fetched while the page loads; nothing later.
import { readPicture } from "./engine/picture";
import type { NamedPicture, Preset } from "./store";
import astronaut from "../../build/studio-photographs/astronaut.webp?url";
import chelsea from "../../build/studio-photographs/chelsea.webp?url";
import coffee from "../../build/studio-photographs/coffee.webp?url";

export interface Sample {
  title: string;
  load: () => Promise<NamedPicture>;
}

function fetched(name: string, url: string): () => Promise<NamedPicture> {
  let loaded: Promise<NamedPicture> | undefined;
  const load = async (): Promise<NamedPicture> => {
    const response = await fetch(url);
    if (!response.ok) throw new Error(`${name} can't be loaded`);
    return { name, picture: await readPicture(await response.blob()) };
  };
  return () => (loaded ??= load());
}

/** Named as in examples/, of which these are lossless copies. */
export const samples: Sample[] = [
  { title: "Coffee", load: fetched("coffee.png", coffee) },
  { title: "Cat", load: fetched("chelsea.png", chelsea) },
  { title: "Astronaut", load: fetched("astronaut.png", astronaut) },
];

export interface Look {
  name: string;
  preset: Preset;
}

const presetFiles = import.meta.glob<Preset>("../../presets/*.json", { eager: true, import: "default" });
const layerFiles = import.meta.glob<string>("../../presets/*.png", { eager: true, import: "default", query: "?url" });

const baseName = (path: string): string => path.slice(path.lastIndexOf("/") + 1);

export const looks: Look[] = Object.entries(presetFiles).map(([path, preset]) => ({
  name: baseName(path).replace(".json", ""),
  preset,
}));

/** The pictures that lie beside the looks, for their layers. */
export const lookPictures = new Map(
  Object.entries(layerFiles).map(([path, url]) => [baseName(path), fetched(baseName(path), url)]),
);

// The presets as a strip of thumbnails, drawn on the visitor's own picture by a worker of their own.
import { useEffect, useRef, useState } from "preact/hooks";
import type { Picture } from "../engine/effect";
import { Drawer } from "../engine/drawer";
import { toTable } from "../engine/values";
import { looks } from "../samples";
import type { Store } from "../store";
import { applyLook, loadLookPictures } from "./files";
import { paint } from "./paint";

/** Pixels; lengths go along with the height, so that a thumbnail shows what the look does on the picture itself. */
const longSide = 600;

function shrunkTo(picture: Picture, side: number): Picture {
  const share = Math.min(1, side / Math.max(picture.width, picture.height));
  const width = Math.max(1, Math.round(picture.width * share));
  const height = Math.max(1, Math.round(picture.height * share));
  const pixels = new Uint8ClampedArray(width * height * 4);
  const from = new Uint32Array(picture.pixels.buffer, picture.pixels.byteOffset, picture.width * picture.height);
  const to = new Uint32Array(pixels.buffer);
  for (let y = 0; y < height; ++y) {
    const row = Math.min(picture.height - 1, Math.floor((y + 0.5) / share)) * picture.width;
    for (let x = 0; x < width; ++x) {
      to[y * width + x] = from[row + Math.min(picture.width - 1, Math.floor((x + 0.5) / share))];
    }
  }
  return { width, height, pixels };
}

function useThumbnails(store: Store): (Picture | undefined)[] {
  const [pictures, setPictures] = useState<(Picture | undefined)[]>([]);
  const drawer = useRef<Drawer>();
  const source = store.source.value;
  useEffect(() => {
    if (!source) return undefined;
    let isOver = false;
    const work = async (): Promise<void> => {
      await loadLookPictures(store);
      if (isOver) return;
      const thumbs = (drawer.current ??= new Drawer(store.program));
      for (const [slot, layer] of store.layers.value) thumbs.takePicture(slot, layer.picture);
      const small = shrunkTo(source.picture, longSide);
      thumbs.takePicture(0, small);
      for (let i = 0; i < looks.length && !isOver; ++i) {
        const picture = await new Promise<Picture | undefined>((resolve) => {
          thumbs.onDrawn = (drawn) => resolve(drawn.picture);
          thumbs.onRefused = () => resolve(undefined);
          thumbs.draw({
            table: toTable(store.controls, store.valuesOf(looks[i].preset, small.height)),
            downsample: 2,
            time: { frame: 0, step: 1, scale: 24 },
            draft: true,
          });
        });
        if (!isOver) setPictures((before) => Object.assign([...before], { [i]: picture }));
      }
    };
    // The picture itself comes first.
    const later = setTimeout(() => void work().catch((error: Error) => store.tell(error.message)), 400);
    return () => {
      isOver = true;
      clearTimeout(later);
    };
  }, [source, store]);
  return pictures;
}

export function Looks({ store }: { store: Store }) {
  const pictures = useThumbnails(store);
  return (
    <ul class="looks" aria-label="Presets">
      <li>
        <button type="button" onClick={() => store.setAll(store.valuesOf({}))} title="Every control at its default">
          <span class="thumbnail plain" />
          default
        </button>
      </li>
      {looks.map((look, i) => (
        <li key={look.name}>
          <button type="button" onClick={() => void applyLook(store, look)} title={look.preset.about}>
            <Thumbnail picture={pictures[i]} />
            {look.name}
          </button>
        </li>
      ))}
    </ul>
  );
}

function Thumbnail({ picture }: { picture?: Picture }) {
  const canvas = useRef<HTMLCanvasElement>(null);
  useEffect(() => {
    if (picture && canvas.current) paint(canvas.current, picture);
  }, [picture]);
  return <canvas ref={canvas} class="thumbnail" width={1} height={1} aria-hidden="true" />;
}

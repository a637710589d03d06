import type { Picture } from "../engine/effect";

/** Puts the picture on the canvas, which takes its size. */
export function paint(canvas: HTMLCanvasElement, picture: Picture): void {
  if (canvas.width !== picture.width) canvas.width = picture.width;
  if (canvas.height !== picture.height) canvas.height = picture.height;
  const { pixels } = picture;
  // Gone back to the worker: a newer one is on its way to the canvas.
  if (pixels.length === 0) return;
  const clamped = pixels instanceof Uint8ClampedArray ? pixels : new Uint8ClampedArray(pixels.buffer);
  canvas.getContext("2d")?.putImageData(new ImageData(clamped, picture.width, picture.height), 0, 0);
}

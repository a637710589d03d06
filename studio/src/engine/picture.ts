// Pictures from files: what the visitor drops, pastes or chooses.
import type { Picture } from "./effect";
import { isPng, pngSize, readPng } from "./png";

/** Larger pictures would not fit the memory that a page can have, with the frame, its copies and the dots. */
export const mostPixels = 50_000_000;

export class WrongPicture extends Error {}

function refuseSize(width: number, height: number): void {
  if (width * height <= mostPixels) return;
  throw new WrongPicture(
    `This picture is too large for the browser: ${width} × ${height}. The studio takes up to ${mostPixels / 1e6} megapixels; ` +
      `the vindrel command takes larger ones.`,
  );
}

async function byBrowser(file: Blob): Promise<Picture> {
  let bitmap: ImageBitmap;
  try {
    bitmap = await createImageBitmap(file, { colorSpaceConversion: "none", premultiplyAlpha: "none" });
  } catch {
    throw new WrongPicture("This file can't be read as a picture. The studio takes PNG, JPEG, WebP, AVIF and GIF.");
  }
  const { width, height } = bitmap;
  try {
    refuseSize(width, height);
    const context = new OffscreenCanvas(width, height).getContext("2d", { willReadFrequently: true });
    if (!context) throw new WrongPicture("There is not enough memory for this picture.");
    context.drawImage(bitmap, 0, 0);
    return { width, height, pixels: context.getImageData(0, 0, width, height).data as Uint8ClampedArray<ArrayBuffer> };
  } finally {
    bitmap.close();
  }
}

/** Throws WrongPicture with a line for the visitor. */
export async function readPicture(file: Blob): Promise<Picture> {
  const head = new Uint8Array(await file.slice(0, 32).arrayBuffer());
  if (!isPng(head)) return byBrowser(file);
  if (head.length >= 24) {
    // Told by the header before any memory is taken.
    const { width, height } = pngSize(head);
    refuseSize(width, height);
  }
  try {
    return (await readPng(new Uint8Array(await file.arrayBuffer()))) ?? (await byBrowser(file));
  } catch (error) {
    if (error instanceof WrongPicture) throw error;
    throw new WrongPicture("This PNG can't be read: it is damaged or cut off.");
  }
}

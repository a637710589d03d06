// PNG files of 8 bits with straight colour, read and written without a canvas: a canvas multiplies colours by alpha, and
// what it gives back under clear and half-clear pixels is no longer what was there.
import type { Picture } from "./effect";

const signature = [137, 80, 78, 71, 13, 10, 26, 10];

const crcTable = Uint32Array.from({ length: 256 }, (_, n) => {
  let c = n;
  for (let k = 0; k < 8; ++k) c = c & 1 ? 0xedb88320 ^ (c >>> 1) : c >>> 1;
  return c;
});

function crc(...parts: Uint8Array[]): number {
  let c = 0xffffffff;
  for (const part of parts) for (const byte of part) c = crcTable[(c ^ byte) & 255] ^ (c >>> 8);
  return (c ^ 0xffffffff) >>> 0;
}

async function through(
  bytes: Uint8Array<ArrayBuffer>,
  stream: CompressionStream | DecompressionStream,
): Promise<Uint8Array<ArrayBuffer>> {
  return new Uint8Array(await new Response(new Blob([bytes]).stream().pipeThrough(stream)).arrayBuffer());
}

export function isPng(file: Uint8Array): boolean {
  return signature.every((byte, i) => file[i] === byte);
}

/** Width and height as the header tells them. */
export function pngSize(file: Uint8Array): { width: number; height: number } {
  const view = new DataView(file.buffer, file.byteOffset, file.byteLength);
  return { width: view.getUint32(16), height: view.getUint32(20) };
}

interface Chunk {
  type: string;
  data: Uint8Array<ArrayBuffer>;
}

function chunksOf(file: Uint8Array<ArrayBuffer>): Chunk[] {
  const view = new DataView(file.buffer, file.byteOffset, file.byteLength);
  const chunks: Chunk[] = [];
  let at = 8;
  while (at + 12 <= file.length) {
    const length = view.getUint32(at);
    if (at + 12 + length > file.length) throw new Error("the file is cut off");
    const body = file.subarray(at + 4, at + 8 + length);
    if (crc(body) !== view.getUint32(at + 8 + length)) throw new Error("the file is damaged");
    const type = String.fromCharCode(...body.subarray(0, 4));
    chunks.push({ type, data: body.subarray(4) });
    if (type === "IEND") return chunks;
    at += 12 + length;
  }
  throw new Error("the file is cut off");
}

function unfilter(raw: Uint8Array, rows: number, rowBytes: number, pixelBytes: number): Uint8Array {
  const out = new Uint8Array(rows * rowBytes);
  for (let y = 0; y < rows; ++y) {
    const filter = raw[y * (rowBytes + 1)];
    const from = y * (rowBytes + 1) + 1;
    const to = y * rowBytes;
    for (let x = 0; x < rowBytes; ++x) {
      const left = x >= pixelBytes ? out[to + x - pixelBytes] : 0;
      const up = y > 0 ? out[to + x - rowBytes] : 0;
      let guess = 0;
      if (filter === 1) guess = left;
      else if (filter === 2) guess = up;
      else if (filter === 3) guess = (left + up) >> 1;
      else if (filter === 4) {
        const corner = x >= pixelBytes && y > 0 ? out[to + x - rowBytes - pixelBytes] : 0;
        const p = left + up - corner;
        const a = Math.abs(p - left);
        const b = Math.abs(p - up);
        const c = Math.abs(p - corner);
        guess = a <= b && a <= c ? left : b <= c ? up : corner;
      }
      out[to + x] = raw[from + x] + guess;
    }
  }
  return out;
}

/** The picture, or undefined for a form that is left to the browser (other depths, palettes, interlaced files). */
export async function readPng(file: Uint8Array<ArrayBuffer>): Promise<Picture | undefined> {
  const chunks = chunksOf(file);
  const { width, height } = pngSize(file);
  const header = chunks[0].data;
  const channels = ({ 0: 1, 2: 3, 4: 2, 6: 4 } as Record<number, number>)[header[9]];
  const isPlain = header[8] === 8 && channels !== undefined && header[12] === 0;
  if (!isPlain || chunks.some((chunk) => chunk.type === "tRNS")) return undefined;
  const packed = new Blob(chunks.filter((chunk) => chunk.type === "IDAT").map((chunk) => chunk.data));
  const raw = await through(new Uint8Array(await packed.arrayBuffer()), new DecompressionStream("deflate"));
  if (raw.length < height * (width * channels + 1)) throw new Error("the file is cut off");
  const samples = unfilter(raw, height, width * channels, channels);
  const pixels = new Uint8ClampedArray(width * height * 4);
  for (let i = 0, from = 0; i < pixels.length; i += 4, from += channels) {
    const grey = channels < 3;
    pixels[i] = samples[from];
    pixels[i + 1] = samples[grey ? from : from + 1];
    pixels[i + 2] = samples[grey ? from : from + 2];
    pixels[i + 3] = channels === 2 ? samples[from + 1] : channels === 4 ? samples[from + 3] : 255;
  }
  return { width, height, pixels };
}

function chunk(type: string, data: Uint8Array<ArrayBuffer>): Uint8Array<ArrayBuffer> {
  const bytes = new Uint8Array(12 + data.length);
  const view = new DataView(bytes.buffer);
  view.setUint32(0, data.length);
  for (let i = 0; i < 4; ++i) bytes[4 + i] = type.charCodeAt(i);
  bytes.set(data, 8);
  view.setUint32(8 + data.length, crc(bytes.subarray(4, 8 + data.length)));
  return bytes;
}

export async function writePng(picture: Picture): Promise<Blob> {
  const { width, height, pixels } = picture;
  const header = new Uint8Array(13);
  const view = new DataView(header.buffer);
  view.setUint32(0, width);
  view.setUint32(4, height);
  header.set([8, 6, 0, 0, 0], 8);
  // Each row is told by its difference from the one above, which suits dots and photographs alike.
  const rowBytes = width * 4;
  const raw = new Uint8Array(height * (rowBytes + 1));
  for (let y = 0; y < height; ++y) {
    const to = y * (rowBytes + 1);
    raw[to] = 2;
    for (let x = 0; x < rowBytes; ++x) {
      raw[to + 1 + x] = pixels[y * rowBytes + x] - (y > 0 ? pixels[(y - 1) * rowBytes + x] : 0);
    }
  }
  const packed = await through(raw, new CompressionStream("deflate"));
  const parts = [chunk("IHDR", header), chunk("IDAT", packed), chunk("IEND", new Uint8Array(0))];
  return new Blob([Uint8Array.from(signature), ...parts], { type: "image/png" });
}

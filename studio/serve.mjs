// Serves a folder of static files on loopback, with the headers that let the page share memory with its workers.
// Usage: node serve.mjs FOLDER [PORT] [--plain]; --plain leaves those headers out, as a plain file server does.
import { createReadStream, statSync } from "node:fs";
import { createServer } from "node:http";
import { extname, join, normalize, resolve, sep } from "node:path";

const types = {
  ".html": "text/html; charset=utf-8",
  ".js": "text/javascript; charset=utf-8",
  ".css": "text/css; charset=utf-8",
  ".svg": "image/svg+xml",
  ".png": "image/png",
  ".webp": "image/webp",
  ".wasm": "application/wasm",
};

/** @returns the server, which listens on a free port when the port is 0 */
export function serve(folder, port, plain = false) {
  const top = resolve(folder);
  const server = createServer((request, response) => {
    const path = decodeURIComponent(new URL(request.url, "http://localhost").pathname);
    const file = normalize(join(top, path.endsWith("/") ? `${path}index.html` : path));
    const isBelow = file.startsWith(top + sep);
    if (!isBelow || !statSync(file, { throwIfNoEntry: false })?.isFile()) {
      response.writeHead(404, { "Content-Type": "text/plain" }).end("There is no such file.\n");
      return;
    }
    const headers = { "Content-Type": types[extname(file)] ?? "application/octet-stream", "Cache-Control": "no-cache" };
    if (!plain) {
      headers["Cross-Origin-Opener-Policy"] = "same-origin";
      headers["Cross-Origin-Embedder-Policy"] = "require-corp";
    }
    response.writeHead(200, headers);
    createReadStream(file).pipe(response);
  });
  return new Promise((done, failed) => {
    server.once("error", failed);
    server.listen(port, "127.0.0.1", () => done(server));
  });
}

if (process.argv[1]?.endsWith("/serve.mjs")) {
  const words = process.argv.slice(2).filter((word) => !word.startsWith("--"));
  const server = await serve(words[0] ?? ".", Number(words[1] ?? 8123), process.argv.includes("--plain"));
  console.log(`The studio is at http://localhost:${server.address().port}/ (Ctrl+C ends it)`);
}

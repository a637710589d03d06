import { defineConfig } from "vite";

export default defineConfig({
  // Works from any folder of a file server.
  base: "./",
  esbuild: { jsx: "automatic", jsxImportSource: "preact" },
  server: { fs: { allow: [".."] } },
  worker: { format: "es" },
  build: {
    outDir: "../build/studio",
    emptyOutDir: true,
    target: "es2022",
    // Everything is a file of its own: the content security policy allows no data addresses.
    assetsInlineLimit: 0,
    modulePreload: { polyfill: false },
  },
});

// The page as it is packed, in the folder STUDIO_FOLDER (the build without it): it starts in a browser from a plain file server.
import assert from "node:assert/strict";
import { mkdtempSync, rmSync } from "node:fs";
import type { AddressInfo } from "node:net";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { test } from "node:test";
import { serve } from "../serve.mjs";
import { startBrowser } from "./browser";
import { root } from "./support";

test("the packed page draws its first picture", { timeout: 120_000 }, async () => {
  const profile = mkdtempSync(join(tmpdir(), "vindrel-packed-studio-"));
  const server = await serve(process.env.STUDIO_FOLDER ?? join(root, "build/studio"), 0, true);
  const context = await startBrowser(profile);
  try {
    const page = await context.newPage();
    const complaints: string[] = [];
    page.on("console", (message) => {
      if (message.type() === "error" || message.type() === "warning") complaints.push(message.text());
    });
    page.on("pageerror", (error) => complaints.push(String(error)));
    await page.goto(`http://localhost:${(server.address() as AddressInfo).port}/`);
    await page.waitForFunction(() => ((window as { vindrelStudio?: { firstPicture: number } }).vindrelStudio?.firstPicture ?? 0) > 0);
    assert.deepEqual(complaints, []);
  } finally {
    await context.close();
    server.close();
    rmSync(profile, { recursive: true, force: true });
  }
});

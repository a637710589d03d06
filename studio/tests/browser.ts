// Debian's Chromium, as the tests start it.
import { chromium, type BrowserContext } from "playwright-core";

/** @param profile  a folder of its own */
export function startBrowser(profile: string): Promise<BrowserContext> {
  return chromium.launchPersistentContext(profile, {
    executablePath: process.env.CHROMIUM ?? "/usr/bin/chromium",
    headless: true,
    viewport: { width: 1280, height: 800 },
    acceptDownloads: true,
    permissions: ["clipboard-read", "clipboard-write"],
    args: [
      "--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run", "--disable-background-networking",
      "--disable-component-update", "--disable-sync",
    ],
  });
}

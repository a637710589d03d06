import { render } from "preact";
import { loadProgram } from "./engine/drawer";
import { samples } from "./samples";
import { Store } from "./store";
import { fromHash } from "./takehome";
import { App } from "./ui/App";
import { openSample } from "./ui/files";
import "./style.css";
import moduleFile from "../../build/wasm/vindrel_studio.wasm?url";

declare global {
  interface Window {
    /** For the tests, which look at what the page can't show. */
    vindrelStudio?: Store;
  }
}

async function main(): Promise<void> {
  const place = document.getElementById("app")!;
  try {
    const store = new Store(await loadProgram(moduleFile));
    window.vindrelStudio = store;
    if (location.hash.length > 1) {
      try {
        const { values, frame } = fromHash(location.hash.slice(1), store);
        store.setAll(values);
        store.frame.value = frame;
      } catch (error) {
        store.tell(`This link's settings can't be read. ${(error as Error).message}`);
      }
    }
    render(<App store={store} />, place);
    await openSample(store, samples[0]);
    for (const sample of samples.slice(1)) void sample.load();
  } catch (error) {
    place.textContent = `The studio can't start here: ${(error as Error).message}. It needs a browser of 2023 or later.`;
    place.className = "cannot-start";
  }
}

void main();

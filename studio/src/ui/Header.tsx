import { samples } from "../samples";
import type { Store } from "../store";
import { chooseFile, openFile, openSample } from "./files";
import { Icon } from "./icons";

export function Header({ store, takeHome }: { store: Store; takeHome: () => void }) {
  const name = store.source.value?.name;
  return (
    <header class="header">
      <h1>
        <svg class="mark" viewBox="0 0 24 24" aria-hidden="true">
          <circle cx="5" cy="5" r="1.6" />
          <circle cx="12" cy="5" r="2.2" />
          <circle cx="19" cy="5" r="1.6" />
          <circle cx="5" cy="12" r="2.2" />
          <circle cx="12" cy="12" r="3.6" />
          <circle cx="19" cy="12" r="2.2" />
          <circle cx="5" cy="19" r="1.6" />
          <circle cx="12" cy="19" r="2.2" />
          <circle cx="19" cy="19" r="1.6" />
        </svg>
        Vindrel <span>studio</span>
      </h1>
      <div class="tools">
        <button
          type="button"
          onClick={() => chooseFile("image/*,.json", (file) => void openFile(store, file))}
          title="Choose a picture, or a preset. You can drop or paste one, too."
        >
          <Icon name="open" />
          <span>Open</span>
        </button>
        <select
          aria-label="Photograph to try"
          value={samples.findIndex((sample) => sampleFile(sample.title) === name)}
          onChange={(event) => {
            const sample = samples[Number(event.currentTarget.value)];
            if (sample) void openSample(store, sample);
          }}
        >
          <option value={-1}>Your picture</option>
          {samples.map((sample, i) => (
            <option key={sample.title} value={i}>
              {sample.title}
            </option>
          ))}
        </select>
        <button
          type="button"
          class="square"
          aria-label="Undo"
          title="Undo (Ctrl+Z)"
          disabled={!store.canUndo.value}
          onClick={() => store.undo()}
        >
          <Icon name="undo" />
        </button>
        <button
          type="button"
          class="square"
          aria-label="Redo"
          title="Redo (Ctrl+Shift+Z)"
          disabled={!store.canRedo.value}
          onClick={() => store.redo()}
        >
          <Icon name="redo" />
        </button>
        <button type="button" class="main" onClick={takeHome} disabled={name === undefined}>
          <Icon name="home" />
          <span>Take home</span>
        </button>
      </div>
    </header>
  );
}

function sampleFile(title: string): string {
  return { Coffee: "coffee.png", Cat: "chelsea.png", Astronaut: "astronaut.png" }[title] ?? "";
}

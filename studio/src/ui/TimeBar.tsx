import type { Store } from "../store";

/** The frame whose jitter is drawn; it shows while "Random Interval" is above 0. */
export function TimeBar({ store }: { store: Store }) {
  const frame = store.frame.value;
  return (
    <div class="time">
      <label for="time">Frame</label>
      <input
        id="time"
        type="range"
        min={0}
        max={240}
        step={1}
        value={frame}
        aria-valuetext={`frame ${frame}, ${(frame / 24).toFixed(2)} seconds`}
        title="Time matters only to the jitter, and only while Random Interval is above 0."
        onInput={(event) => store.setFrame(Number(event.currentTarget.value))}
      />
      <output for="time">
        {frame} <small>at 24 fps</small>
      </output>
    </div>
  );
}

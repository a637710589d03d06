// The picture: before, after or both, with zoom, pan and the handles of places.
import { useEffect, useLayoutEffect, useRef, useState } from "preact/hooks";
import type { Control, Picture } from "../engine/effect";
import { isPlace } from "../engine/values";
import type { Store } from "../store";
import { Icon } from "./icons";
import { paint } from "./paint";

type Mode = "after" | "before" | "both";

/** CSS pixels for each pixel of the picture, and where its top left corner lies in the pane. */
interface View {
  scale: number;
  x: number;
  y: number;
}

const leastScale = 0.02;
const greatestScale = 32;

export function Stage({ store }: { store: Store }) {
  const [mode, setMode] = useState<Mode>("after");
  const [view, setView] = useState<View | undefined>(undefined);
  const [size, setSize] = useState({ width: 0, height: 0 });
  const panes = useRef<HTMLDivElement>(null);
  const source = store.source.value;
  const picture = source?.picture;
  const paneWidth = mode === "both" ? size.width / 2 : size.width;

  useLayoutEffect(() => {
    const element = panes.current!;
    const measure = (): void => setSize({ width: element.clientWidth, height: element.clientHeight });
    measure();
    const observer = new ResizeObserver(measure);
    observer.observe(element);
    return () => observer.disconnect();
  }, []);

  // Without a view of his own the visitor sees the whole picture.
  const fitted = picture ? fit(picture, paneWidth, size.height) : { scale: 1, x: 0, y: 0 };
  const shown = view ?? fitted;
  useEffect(() => setView(undefined), [picture]);

  const zoom = (factor: number, atX = paneWidth / 2, atY = size.height / 2): void => {
    setView((before) => {
      const from = before ?? fitted;
      const scale = Math.min(greatestScale, Math.max(leastScale, from.scale * factor));
      const ratio = scale / from.scale;
      return { scale, x: atX - (atX - from.x) * ratio, y: atY - (atY - from.y) * ratio };
    });
  };
  const pan = (dx: number, dy: number): void => {
    setView((before) => {
      const from = before ?? fitted;
      return { ...from, x: from.x + dx, y: from.y + dy };
    });
  };

  const onKeyDown = (event: KeyboardEvent): void => {
    if (event.ctrlKey || event.metaKey || event.altKey || event.target !== event.currentTarget) return;
    const step = event.shiftKey ? 120 : 24;
    const acts: Record<string, () => void> = {
      "+": () => zoom(1.25),
      "=": () => zoom(1.25),
      "-": () => zoom(0.8),
      "0": () => setView(undefined),
      ArrowLeft: () => pan(step, 0),
      ArrowRight: () => pan(-step, 0),
      ArrowUp: () => pan(0, step),
      ArrowDown: () => pan(0, -step),
    };
    const act = acts[event.key];
    if (!act) return;
    act();
    event.preventDefault();
  };

  const pointers = usePointers(pan, zoom);
  const sides: ("before" | "after")[] = mode === "both" ? ["before", "after"] : [mode];
  const frame = store.shown.value;

  return (
    <section class="stage" aria-label="Picture">
      <div
        class="panes"
        ref={panes}
        tabIndex={0}
        role="group"
        aria-label="Picture; plus and minus zoom, 0 shows all of it, the arrow keys move it"
        onKeyDown={onKeyDown}
        onWheel={(event) => {
          event.preventDefault();
          const box = event.currentTarget.getBoundingClientRect();
          zoom(Math.exp(-event.deltaY * 0.0015), (event.clientX - box.left) % (paneWidth || 1), event.clientY - box.top);
        }}
        {...pointers}
      >
        {picture &&
          sides.map((side) => (
            <div class="pane" key={side}>
              <Sheet picture={side === "before" ? picture : (frame?.picture ?? picture)} whole={picture} view={shown} side={side} />
              {side === "after" && <Handles store={store} picture={picture} view={shown} />}
              {mode === "both" && <span class="side">{side}</span>}
            </div>
          ))}
      </div>
      <div class="stage-bar">
        <div class="segments" role="radiogroup" aria-label="Show">
          {(["after", "before", "both"] as const).map((one) => (
            <label key={one}>
              <input type="radio" name="mode" checked={mode === one} onChange={() => setMode(one)} />
              <span>{one === "both" ? "Both" : one === "after" ? "After" : "Before"}</span>
            </label>
          ))}
        </div>
        <Status store={store} />
        <div class="zoom">
          <button type="button" class="square" aria-label="Zoom out" onClick={() => zoom(0.8)}>
            <Icon name="minus" />
          </button>
          <button type="button" class="percent" title="Show at full size" onClick={() => zoom(1 / shown.scale)}>
            {Math.round(shown.scale * 100)}%
          </button>
          <button type="button" class="square" aria-label="Zoom in" onClick={() => zoom(1.25)}>
            <Icon name="plus" />
          </button>
          <button type="button" class="square" aria-label="Show all of the picture" onClick={() => setView(undefined)}>
            <Icon name="fit" />
          </button>
        </div>
      </div>
    </section>
  );
}

function Status({ store }: { store: Store }) {
  const source = store.source.value;
  const progress = store.progress.value;
  const frame = store.shown.value;
  let text = "";
  if (source) text = `${source.name}, ${source.picture.width} × ${source.picture.height}`;
  if (frame && progress === undefined) text += `, ${Math.round(frame.milliseconds)} ms`;
  return (
    <p class="status" title={text}>
      {progress === undefined ? (
        text
      ) : (
        <progress aria-label="Drawing" max={1} value={progress}>
          {Math.round(progress * 100)}%
        </progress>
      )}
    </p>
  );
}

function fit(picture: Picture, width: number, height: number): View {
  const margin = 16;
  const scale = Math.max(
    leastScale,
    Math.min(4, (width - 2 * margin) / picture.width, (height - 2 * margin) / picture.height),
  );
  return { scale, x: (width - picture.width * scale) / 2, y: (height - picture.height * scale) / 2 };
}

interface SheetProps {
  picture: Picture;
  whole: Picture;
  view: View;
  side: "before" | "after";
}

function Sheet({ picture, whole, view, side }: SheetProps) {
  const canvas = useRef<HTMLCanvasElement>(null);
  useLayoutEffect(() => paint(canvas.current!, picture), [picture]);
  return (
    <canvas
      ref={canvas}
      class={view.scale >= 2 && picture.width === whole.width ? "sheet hard" : "sheet"}
      role="img"
      aria-label={side === "before" ? "The picture without the effect" : "The picture with the effect"}
      width={1}
      height={1}
      style={{
        width: `${whole.width * view.scale}px`,
        height: `${whole.height * view.scale}px`,
        transform: `translate(${view.x}px, ${view.y}px)`,
      }}
    />
  );
}

/** One pointer moves the picture, two zoom it. */
function usePointers(pan: (dx: number, dy: number) => void, zoom: (factor: number, x: number, y: number) => void) {
  const down = useRef(new Map<number, { x: number; y: number }>());
  const end = (event: PointerEvent): void => {
    down.current.delete(event.pointerId);
  };
  return {
    onPointerDown: (event: PointerEvent) => {
      if (event.button > 1 || (event.target as Element).closest("button")) return;
      (event.currentTarget as Element).setPointerCapture(event.pointerId);
      down.current.set(event.pointerId, { x: event.clientX, y: event.clientY });
    },
    onPointerMove: (event: PointerEvent) => {
      const before = down.current.get(event.pointerId);
      if (!before) return;
      const now = { x: event.clientX, y: event.clientY };
      const other = [...down.current].find(([id]) => id !== event.pointerId)?.[1];
      down.current.set(event.pointerId, now);
      if (!other) {
        pan(now.x - before.x, now.y - before.y);
        return;
      }
      const box = (event.currentTarget as Element).getBoundingClientRect();
      const distance = (p: { x: number; y: number }): number => Math.hypot(p.x - other.x, p.y - other.y);
      pan((now.x - before.x) / 2, (now.y - before.y) / 2);
      zoom(
        distance(now) / Math.max(1, distance(before)),
        (now.x + other.x) / 2 - box.left,
        (now.y + other.y) / 2 - box.top,
      );
    },
    onPointerUp: end,
    onPointerCancel: end,
  };
}

function Handles({ store, picture, view }: { store: Store; picture: Picture; view: View }) {
  return (
    <>
      {store.controls
        .filter((control) => control.kind === "place")
        .map((control) => (
          <Handle key={control.index} store={store} control={control} picture={picture} view={view} />
        ))}
    </>
  );
}

interface HandleProps {
  store: Store;
  control: Control;
  picture: Picture;
  view: View;
}

/** Hundredths of a percent are finer than a pixel of any picture that fits. */
const rounded = (percent: number): number => Math.round(percent * 100) / 100;

function Handle({ store, control, picture, view }: HandleProps) {
  const value = store.values[control.index - 1].value;
  const grip = useRef<{ dx: number; dy: number } | undefined>(undefined);
  const gesture = useRef(0);
  if (store.greyed[control.index - 1].value || !isPlace(value)) return null;
  const x = value.percent ? (value.x * picture.width) / 100 : value.x;
  const y = value.percent ? (value.y * picture.height) / 100 : value.y;
  const moveTo = (toX: number, toY: number, name: string): void => {
    const place = {
      x: rounded((100 * toX) / picture.width),
      y: rounded((100 * toY) / picture.height),
      percent: true,
    };
    store.set(control.index, place, name);
  };
  const onPointerDown = (event: PointerEvent): void => {
    const button = event.currentTarget as HTMLElement;
    button.setPointerCapture(event.pointerId);
    grip.current = { dx: event.clientX - x * view.scale, dy: event.clientY - y * view.scale };
    gesture.current += 1;
    event.stopPropagation();
  };
  const onPointerMove = (event: PointerEvent): void => {
    const held = grip.current;
    if (!held) return;
    moveTo((event.clientX - held.dx) / view.scale, (event.clientY - held.dy) / view.scale, `drag ${gesture.current}`);
  };
  const release = (): void => {
    grip.current = undefined;
  };
  const onKeyDown = (event: KeyboardEvent): void => {
    const step = event.shiftKey ? 10 : 1;
    const steps: Record<string, [number, number]> = {
      ArrowLeft: [-step, 0],
      ArrowRight: [step, 0],
      ArrowUp: [0, -step],
      ArrowDown: [0, step],
    };
    const by = steps[event.key];
    if (!by) return;
    moveTo(x + by[0], y + by[1], "keys");
    event.preventDefault();
    event.stopPropagation();
  };
  const number = /\d$/.exec(control.name)?.[0];
  return (
    <button
      type="button"
      class={number ? "handle effector" : "handle"}
      aria-label={`${control.name}: ${Math.round(x)}, ${Math.round(y)}; the arrow keys move it`}
      title={control.name}
      style={{ transform: `translate(${view.x + x * view.scale}px, ${view.y + y * view.scale}px)` }}
      onPointerDown={onPointerDown}
      onPointerMove={onPointerMove}
      onPointerUp={release}
      onPointerCancel={release}
      onKeyDown={onKeyDown}
    >
      {number ?? ""}
    </button>
  );
}

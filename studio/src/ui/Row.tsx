// One control: its name, what sets it, and the way back to its default.
import type { Signal } from "@preact/signals";
import { useRef, useState } from "preact/hooks";
import type { Control } from "../engine/effect";
import {
  firstPictureLayer, isPlace, isPrepared, isSeparator, layerNone, layerOf, layerSource, numberText, parseValue, preparationText,
  preparedLayer, WrongValue, type Value,
} from "../engine/values";
import type { Store } from "../store";
import { chooseFile, openLayer } from "./files";
import { Icon } from "./icons";

interface RowProps {
  store: Store;
  control: Control;
  atHand: Signal<Control | undefined>;
}

interface WidgetProps {
  store: Store;
  control: Control;
  value: Value;
  greyed: boolean;
  /** Of the element that the label names; its help is at `${id}-help`. */
  id: string;
}

export function Row({ store, control, atHand }: RowProps) {
  const i = control.index - 1;
  const value = store.values[i].value;
  const greyed = store.greyed[i].value;
  const changed = store.isChanged(i);
  const id = `control-${control.index}`;
  const Widget = widgets[control.kind];
  const help = store.helpOf(control);
  const point = (): void => {
    atHand.value = control;
  };
  return (
    <div
      class={`row ${control.kind.replaceAll(" ", "-")}${greyed ? " greyed" : ""}${changed ? " changed" : ""}`}
      data-control={control.index}
      onFocusCapture={point}
      onPointerEnter={point}
    >
      <label class="name" for={id}>
        {control.name}
      </label>
      {Widget && <Widget store={store} control={control} value={value} greyed={greyed} id={id} />}
      <button
        type="button"
        class="reset"
        aria-label={`Reset ${control.name}`}
        title="Back to the default"
        disabled={!changed}
        onClick={() => store.reset([control.index])}
      >
        <Icon name="reset" />
      </button>
      <span id={`${id}-help`} hidden>
        {help}
      </span>
    </div>
  );
}

type Widget = (props: WidgetProps) => preact.JSX.Element;

const widgets: Record<string, Widget | undefined> = {
  number: Slider,
  "whole number": Slider,
  angle: Slider,
  "check box": CheckBox,
  colour: Color,
  place: PlaceFields,
  choice: Choice,
  layer: Layer,
};

/** A hundredth of the slider's way or a little less, and never more than 1: what lies between can be typed. */
function stepOf(control: Control): number {
  if (control.kind !== "number" || !control.slider) return 1;
  const fine = 10 ** Math.floor(Math.log10((control.slider[1] - control.slider[0]) / 100));
  return Math.min(1, Math.max(fine, 10 ** -(control.precision ?? 0)));
}

function Slider({ store, control, value, greyed, id }: WidgetProps) {
  const gesture = useRef(0);
  const number = typeof value === "number" ? value : 0;
  const [least, greatest] = control.slider ?? [-180, 180];
  return (
    <div class="setter slider">
      <input
        type="range"
        aria-label={`${control.name}, slider`}
        aria-describedby={`${id}-help`}
        min={least}
        max={greatest}
        step={stepOf(control)}
        value={number}
        disabled={greyed}
        onPointerDown={() => (gesture.current += 1)}
        onInput={(event) => store.set(control.index, Number(event.currentTarget.value), `slide ${gesture.current}`)}
      />
      <TextField store={store} control={control} text={shortText(control, number)} greyed={greyed} id={id} />
    </div>
  );
}

/** Rounded for the eye, to what the field has room for; the value itself is kept as it is. */
function shortText(control: Control, number: number): string {
  const text = numberText(Math.abs(number) >= 1000 ? Math.round(number * 10) / 10 : Number(number.toPrecision(5)));
  return text + (control.kind === "angle" ? "°" : control.percent ? "%" : "");
}

interface FieldProps {
  store: Store;
  control: Control;
  text: string;
  greyed: boolean;
  id: string;
}

/** Takes what the command line takes, and says so where something else is typed. */
function TextField({ store, control, text, greyed, id }: FieldProps) {
  const [draft, setDraft] = useState<string | undefined>(undefined);
  const [wrong, setWrong] = useState("");
  const commit = (typed: string): void => {
    setDraft(undefined);
    setWrong("");
    if (typed.trim() === text) return;
    try {
      store.set(control.index, parseValue(control, typed));
    } catch (error) {
      if (!(error instanceof WrongValue)) throw error;
      setDraft(typed);
      setWrong(error.message);
      store.tell(error.message);
    }
  };
  const onKeyDown = (event: KeyboardEvent): void => {
    if (event.key === "Enter") commit((event.currentTarget as HTMLInputElement).value);
    if (event.key === "Escape") {
      setDraft(undefined);
      setWrong("");
    }
    const direction = { ArrowUp: 1, ArrowDown: -1 }[event.key];
    const value = store.values[control.index - 1].peek();
    if (direction === undefined || typeof value !== "number") return;
    event.preventDefault();
    const [least, greatest] = control.valid ?? [-32767, 32767];
    const step = direction * stepOf(control) * (event.shiftKey ? 10 : 1);
    const stepped = Math.round((value + step) * 1e6) / 1e6;
    store.set(control.index, Math.min(greatest, Math.max(least, stepped)), "keys");
  };
  return (
    <input
      id={id}
      class="field"
      type="text"
      inputMode="decimal"
      autocomplete="off"
      spellcheck={false}
      aria-describedby={`${id}-help`}
      aria-invalid={wrong !== ""}
      title={wrong || undefined}
      value={draft ?? text}
      disabled={greyed}
      onInput={(event) => setDraft(event.currentTarget.value)}
      onBlur={(event) => draft !== undefined && commit(event.currentTarget.value)}
      onKeyDown={onKeyDown}
    />
  );
}

function CheckBox({ store, control, value, greyed, id }: WidgetProps) {
  return (
    <div class="setter">
      <input
        id={id}
        type="checkbox"
        aria-describedby={`${id}-help`}
        checked={value === true}
        disabled={greyed}
        onChange={(event) => store.set(control.index, event.currentTarget.checked)}
      />
    </div>
  );
}

function Color({ store, control, value, greyed, id }: WidgetProps) {
  const color = typeof value === "string" ? value : "#000000";
  return (
    <div class="setter color">
      <input
        type="color"
        aria-label={`${control.name}, picker`}
        aria-describedby={`${id}-help`}
        value={color}
        disabled={greyed}
        onInput={(event) => store.set(control.index, event.currentTarget.value, "pick")}
      />
      <TextField store={store} control={control} text={color} greyed={greyed} id={id} />
    </div>
  );
}

function PlaceFields({ store, control, value, greyed, id }: WidgetProps) {
  if (!isPlace(value)) return <div class="setter" />;
  const unit = value.percent ? "%" : "";
  const text = `${numberText(value.x)}${unit}, ${numberText(value.y)}${unit}`;
  return (
    <div class="setter">
      <TextField store={store} control={control} text={text} greyed={greyed} id={id} />
    </div>
  );
}

function Choice({ store, control, value, greyed, id }: WidgetProps) {
  return (
    <div class="setter">
      <select
        id={id}
        aria-describedby={`${id}-help`}
        value={String(value)}
        disabled={greyed}
        onChange={(event) => store.set(control.index, Number(event.currentTarget.value))}
      >
        {(control.choices ?? []).map((item, i) =>
          isSeparator(item) ? (
            <hr key={i} />
          ) : (
            <option key={i} value={i + 1}>
              {item}
            </option>
          ),
        )}
      </select>
    </div>
  );
}

function Layer({ store, control, value, greyed, id }: WidgetProps) {
  // Another picture is prepared in the same way.
  const show = (layer: number): void =>
    store.set(control.index, preparedLayer(layer, isPrepared(value) && layer !== layerNone ? value : {}));
  const take = (file: File): void => {
    void openLayer(store, file).then((layer) => {
      if (layer !== undefined) show(layer);
    });
  };
  return (
    <div class="setter layer-setter">
      <select
        id={id}
        aria-describedby={`${id}-help`}
        value={String(layerOf(value))}
        disabled={greyed}
        onChange={(event) => show(Number(event.currentTarget.value))}
      >
        <option value={layerNone}>None</option>
        <option value={layerSource}>The picture itself</option>
        {[...store.layers.value].map(([slot, layer]) => (
          <option key={slot} value={firstPictureLayer + slot}>
            {layer.name}
          </option>
        ))}
      </select>
      <button
        type="button"
        class="square"
        aria-label={`Choose a file for ${control.name}`}
        title="Choose a picture's file"
        disabled={greyed}
        onClick={() => chooseFile("image/*", take)}
      >
        <Icon name="folder" />
      </button>
      {isPrepared(value) && (
        <div class="prepared">
          <span title="How the picture is prepared on its way to the effect, in the words of the command line">
            {preparationText(value).replaceAll(",", ", ")}
          </span>
          <button
            type="button"
            class="square"
            aria-label={`Take ${control.name} as it is`}
            title="Take the picture as it is"
            disabled={greyed}
            onClick={() => store.set(control.index, value.layer)}
          >
            <Icon name="close" />
          </button>
        </div>
      )}
    </div>
  );
}

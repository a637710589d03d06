// The dialog with everything that can be taken home.
import { useEffect, useRef, useState } from "preact/hooks";
import { writePng } from "../engine/png";
import { isPrepared, layerOf } from "../engine/values";
import type { Store } from "../store";
import { commandOf, hashOf, listOf, presetFile } from "../takehome";
import { save } from "./files";
import { Icon } from "./icons";

const baseName = (name: string): string => name.replace(/\.[^.]*$/, "");

export function TakeHome({ store, close }: { store: Store; close: () => void }) {
  const dialog = useRef<HTMLDialogElement>(null);
  const [saving, setSaving] = useState(false);
  useEffect(() => dialog.current?.showModal(), []);
  const name = baseName(store.source.value?.name ?? "picture");
  const link = new URL(location.href);
  link.hash = hashOf(store);
  const savePicture = async (): Promise<void> => {
    setSaving(true);
    try {
      const { picture } = await store.drawnInFull();
      store.keep(picture);
      save(`${name}-vindrel.png`, await writePng(picture));
    } catch (error) {
      store.tell(`The picture can't be saved: ${(error as Error).message}`);
    } finally {
      setSaving(false);
    }
  };
  const savePreset = (): void =>
    save(`${name}-preset.json`, new Blob([presetFile(store)], { type: "application/json" }));
  const usesFiles = store.controls.some((c, i) => c.kind === "layer" && layerOf(store.values[i].value) > 1);
  const preparesLayers = store.values.some((value) => isPrepared(value.value));
  return (
    <dialog class="take-home" ref={dialog} onClose={close} aria-labelledby="take-home-title">
      <div class="dialog-top">
        <h2 id="take-home-title">Take home</h2>
        <button type="button" class="square" aria-label="Close" onClick={() => dialog.current?.close()}>
          <Icon name="close" />
        </button>
      </div>
      <div class="two">
        <button type="button" class="main" disabled={saving} onClick={() => void savePicture()}>
          {saving ? "Drawing…" : "Save picture (PNG)"}
        </button>
        <button type="button" onClick={savePreset}>
          Save preset
        </button>
      </div>
      <p>
        The picture is saved at full size. The preset opens here and with <code>vindrel render --preset</code>.
        {usesFiles && " Pictures of layers must lie beside it."}
      </p>
      <Text label="Link" text={link.href} note="Holds the settings, never the picture." lines={2} />
      <Text label="Command" text={commandOf(store)} note="Draws the same picture with the command line." lines={3} />
      <Text
        label="Values"
        text={listOf(store)}
        note={
          "What differs from the defaults, in the order of the panel in After Effects." +
          (preparesLayers ? " A layer that is prepared here must be prepared by hand there: blurred by a dot's pitch, and its tones bent." : "")
        }
        lines={7}
      />
    </dialog>
  );
}

interface TextProps {
  label: string;
  text: string;
  note: string;
  lines: number;
}

function Text({ label, text, note, lines }: TextProps) {
  const [copied, setCopied] = useState(false);
  const field = useRef<HTMLTextAreaElement>(null);
  const id = `take-${label.toLowerCase()}`;
  const copy = async (): Promise<void> => {
    field.current?.select();
    try {
      await navigator.clipboard.writeText(text);
      setCopied(true);
      setTimeout(() => setCopied(false), 2000);
    } catch {
      // The text is selected: the keyboard copies it where the page may not.
    }
  };
  return (
    <section class="text">
      <div class="text-top">
        <label for={id}>{label}</label>
        <button type="button" onClick={() => void copy()} aria-label={`Copy ${label.toLowerCase()}`}>
          {copied ? "Copied" : "Copy"}
        </button>
      </div>
      <textarea id={id} ref={field} readOnly rows={lines} value={text} spellcheck={false} aria-describedby={`${id}-note`} />
      <p id={`${id}-note`}>{note}</p>
    </section>
  );
}

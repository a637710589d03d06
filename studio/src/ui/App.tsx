import { useEffect, useState } from "preact/hooks";
import type { Store } from "../store";
import { openFile } from "./files";
import { Header } from "./Header";
import { Looks } from "./Looks";
import { Panel } from "./Panel";
import { Stage } from "./Stage";
import { TakeHome } from "./TakeHome";
import { TimeBar } from "./TimeBar";

function isTyping(target: EventTarget | null): boolean {
  return target instanceof HTMLInputElement && !["range", "checkbox", "color"].includes(target.type);
}

export function App({ store }: { store: Store }) {
  const [takingHome, setTakingHome] = useState(false);
  const [dropping, setDropping] = useState(false);

  useEffect(() => {
    const keys = (event: KeyboardEvent): void => {
      if (!(event.ctrlKey || event.metaKey) || isTyping(event.target)) return;
      const key = event.key.toLowerCase();
      if (key === "z" && !event.shiftKey) store.undo();
      else if (key === "y" || (key === "z" && event.shiftKey)) store.redo();
      else return;
      event.preventDefault();
    };
    const paste = (event: ClipboardEvent): void => {
      const file = event.clipboardData?.files[0];
      if (file) void openFile(store, file);
    };
    const drag = (event: DragEvent): void => {
      event.preventDefault();
      setDropping(event.type === "dragover");
      const file = event.type === "drop" ? event.dataTransfer?.files[0] : undefined;
      if (file) void openFile(store, file);
    };
    document.addEventListener("keydown", keys);
    document.addEventListener("paste", paste);
    for (const name of ["dragover", "dragleave", "drop"] as const) document.addEventListener(name, drag);
    return () => {
      document.removeEventListener("keydown", keys);
      document.removeEventListener("paste", paste);
      for (const name of ["dragover", "dragleave", "drop"] as const) document.removeEventListener(name, drag);
    };
  }, [store]);

  return (
    <div class={dropping ? "app dropping" : "app"}>
      <Header store={store} takeHome={() => setTakingHome(true)} />
      <main class="work">
        <Stage store={store} />
        <div class="below">
          <TimeBar store={store} />
          <Looks store={store} />
        </div>
      </main>
      <Panel store={store} />
      <Message store={store} />
      {takingHome && <TakeHome store={store} close={() => setTakingHome(false)} />}
    </div>
  );
}

function Message({ store }: { store: Store }) {
  const text = store.message.value;
  return (
    <div class="message" role="alert" hidden={text === ""}>
      <span>{text}</span>
      {text !== "" && (
        <button type="button" class="quiet" onClick={() => store.tell("")}>
          Close
        </button>
      )}
    </div>
  );
}

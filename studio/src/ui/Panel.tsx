// The controls, as the effect declared them: groups, rows, search, and the help of the row at hand.
import { signal } from "@preact/signals";
import { useState } from "preact/hooks";
import type { Control } from "../engine/effect";
import { hasValue } from "../engine/values";
import type { Node, Store } from "../store";
import { Icon } from "./icons";
import { Row } from "./Row";

/** The control that the pointer or the focus is on. */
const atHand = signal<Control | undefined>(undefined);

function matches(store: Store, control: Control, words: string[]): boolean {
  const text = `${control.name} ${store.helpOf(control)} ${(control.choices ?? []).join(" ")}`.toLowerCase();
  return words.every((word) => text.includes(word));
}

/** What is left of the tree when only controls that fit the words stay; a group that fits keeps all. */
function found(store: Store, nodes: Node[], words: string[]): Node[] {
  if (words.length === 0) return nodes;
  return nodes.flatMap((node) => {
    if (!node.children) return matches(store, node.control, words) ? [node] : [];
    const name = node.control.name.toLowerCase();
    const children = words.every((word) => name.includes(word)) ? node.children : found(store, node.children, words);
    return children.length > 0 ? [{ ...node, children }] : [];
  });
}

function indicesOf(nodes: Node[]): number[] {
  return nodes.flatMap(({ control, children }) =>
    children ? indicesOf(children) : hasValue(control) ? [control.index] : [],
  );
}

export function Panel({ store }: { store: Store }) {
  const [search, setSearch] = useState("");
  const words = search.toLowerCase().split(/\s+/).filter(Boolean);
  const nodes = found(store, store.tree, words);
  const count = store.changedCount.value;
  return (
    <aside class="panel" aria-label="Controls">
      <div class="panel-top">
        <div class="search">
          <Icon name="search" />
          <input
            type="search"
            placeholder="Search controls"
            aria-label="Search controls"
            value={search}
            onInput={(event) => setSearch(event.currentTarget.value)}
          />
        </div>
        <button
          type="button"
          disabled={count === 0}
          onClick={() => store.reset(indicesOf(store.tree))}
          title="Every control back to its default"
        >
          Reset all
        </button>
      </div>
      <div class="rows">
        {nodes.length === 0 && <p class="nothing">No control fits these words.</p>}
        <Nodes store={store} nodes={nodes} open={words.length > 0} />
      </div>
      <Help store={store} />
    </aside>
  );
}

function Nodes({ store, nodes, open }: { store: Store; nodes: Node[]; open: boolean }) {
  return (
    <>
      {nodes.map((node) =>
        node.children ? (
          <Group key={`${node.control.index} ${open}`} store={store} node={node} open={open} />
        ) : (
          <Row key={node.control.index} store={store} control={node.control} atHand={atHand} />
        ),
      )}
    </>
  );
}

function Group({ store, node, open }: { store: Store; node: Node; open: boolean }) {
  const { control, children = [] } = node;
  // All of the group, also while a search shows only some of it.
  const indices = indicesOf(store.groupOf(control.index));
  const changed = indices.filter((index) => store.isChanged(index - 1)).length;
  const help = store.helpOf(control);
  return (
    <details class="group" open={open} data-control={control.index}>
      <summary onFocus={() => (atHand.value = control)} onPointerEnter={() => (atHand.value = control)}>
        <span class="group-name">{control.name}</span>
        {changed > 0 && (
          <span class="count" title={`${changed} changed`}>
            {changed}
            <span class="unseen"> changed</span>
          </span>
        )}
      </summary>
      {help !== "" && <p class="group-help">{help}</p>}
      <Nodes store={store} nodes={children} open={open} />
      <div class="group-end">
        <button type="button" class="quiet" disabled={changed === 0} onClick={() => store.reset(indices)}>
          Reset {control.name}
        </button>
      </div>
    </details>
  );
}

function Help({ store }: { store: Store }) {
  const control = atHand.value;
  return (
    <div class="help" aria-hidden="true">
      {control ? (
        <>
          <strong>{control.name}</strong> {store.helpOf(control)}
        </>
      ) : (
        "Point at a control to read what it does."
      )}
    </div>
  );
}

// The question of the page with its undo and its place in the address.

import { useCallback, useEffect, useReducer } from "preact/hooks";
import { readHash, writeHash, type View } from "./hash.js";
import { OPENING, begin, change, redo, replaced, undo, without } from "./state.js";
import type { History, Query } from "./state.js";

interface Page {
  history: History;
  view: View;
}

type Action =
  | { do: "change"; next: Query; key: string; now: number }
  | { do: "text"; at: number; text: string; key: string; now: number }
  | { do: "remove"; at: number; now: number }
  | { do: "undo" }
  | { do: "redo" }
  | { do: "view"; view: Partial<View> }
  | { do: "open"; query: Query; view: View; now: number };

function step(page: Page, action: Action): Page {
  const { history, view } = page;
  const query = history.present;
  const changed = (next: Query, key: string, now: number) => ({
    ...page,
    history: change(history, next, key, now),
  });
  switch (action.do) {
    case "change":
      return within(changed(action.next, action.key, action.now));
    case "text": {
      const players = replaced(query.players, action.at, action.text);
      return changed({ ...query, players }, action.key, action.now);
    }
    case "remove": {
      const left = { ...query, players: without(query.players, action.at) };
      const player = view.player > action.at ? view.player - 1 : view.player;
      return within({ ...changed(left, "", action.now), view: { ...view, player } });
    }
    case "undo":
      return within({ ...page, history: undo(history) });
    case "redo":
      return within({ ...page, history: redo(history) });
    case "view":
      return { ...page, view: { ...view, ...action.view } };
    case "open":
      return { history: change(history, action.query, "", action.now), view: action.view };
  }
}

/** The player looked at is one that there is. */
function within(page: Page): Page {
  const last = page.history.present.players.length - 1;
  if (page.view.player <= last) return page;
  return { ...page, view: { ...page.view, player: last } };
}

function start(): Page {
  const opened = readHash(location.hash);
  if (opened !== null) return { history: begin(opened.query), view: opened.view };
  return { history: begin(OPENING), view: { tab: "range", player: 1 } };
}

const ADDRESS_REST_MS = 150;

export function usePage() {
  const [page, dispatch] = useReducer(step, undefined, start);
  const query = page.history.present;
  const hash = writeHash(query, page.view);

  useEffect(() => {
    // Browsers take only so many changes of the address in a time.
    const timer = setTimeout(() => history.replaceState(null, "", hash), ADDRESS_REST_MS);
    return () => clearTimeout(timer);
  }, [hash]);

  useEffect(() => {
    const onHash = (event: HashChangeEvent) => {
      // Not the address of now: the page may have written there meanwhile.
      const opened = readHash(new URL(event.newURL).hash);
      if (opened !== null) dispatch({ do: "open", ...opened, now: Date.now() });
    };
    const onKey = (event: KeyboardEvent) => {
      if (!(event.ctrlKey || event.metaKey) || event.altKey) return;
      const key = event.key.toLowerCase();
      if (key !== "z" && key !== "y") return;
      event.preventDefault(); // a field's own undo knows of that field only
      dispatch({ do: key === "y" || event.shiftKey ? "redo" : "undo" });
    };
    window.addEventListener("hashchange", onHash);
    window.addEventListener("keydown", onKey);
    return () => {
      window.removeEventListener("hashchange", onHash);
      window.removeEventListener("keydown", onKey);
    };
  }, []);

  const onChange = useCallback(
    (next: Query, key: string) => dispatch({ do: "change", next, key, now: Date.now() }),
    [],
  );
  const onText = useCallback(
    (at: number, text: string, key: string) =>
      dispatch({ do: "text", at, text, key, now: Date.now() }),
    [],
  );
  const onRemove = useCallback((at: number) => dispatch({ do: "remove", at, now: Date.now() }), []);
  const onView = useCallback((view: Partial<View>) => dispatch({ do: "view", view }), []);
  return {
    query,
    view: page.view,
    canUndo: page.history.past.length > 0,
    canRedo: page.history.future.length > 0,
    undo: () => dispatch({ do: "undo" }),
    redo: () => dispatch({ do: "redo" }),
    address: () => location.href.replace(/#.*$/, "") + hash,
    onChange,
    onText,
    onRemove,
    onView,
  };
}

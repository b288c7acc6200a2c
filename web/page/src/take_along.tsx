// What one takes along: the answer as text, JSON and CSV, and the picture of what is looked at.

import type { DetailName, DocumentKind } from "pokermath";
import { useCalculator } from "./calculator.js";
import { T } from "./texts.js";

interface TakeProps {
  by: DetailName;
  /** Whether the answer has what it is about. */
  rows: boolean;
  /** Whether there is a picture of it. */
  picture: boolean;
  disabled: boolean;
  onTold: (message: string) => void;
}

export function TakeAlong({ by, rows, picture, disabled, onTold }: TakeProps) {
  const calculator = useCalculator();
  const take = async (kind: DocumentKind) => {
    try {
      const text = await calculator.document(kind, by);
      if (kind === "svg") save(text, T.pictureFile(by));
      else await copy(text);
      onTold(kind === "svg" ? T.saved : T.copied(T.whats[kind]));
    } catch (problem) {
      onTold(T.failed(problem instanceof Error ? problem.message : String(problem)));
    }
  };
  const button = (kind: DocumentKind, name: string, possible = true) => (
    <button
      type="button"
      class="button"
      disabled={disabled || !possible}
      onClick={() => void take(kind)}
    >
      {name}
    </button>
  );
  return (
    <div class="take" role="group" aria-label={T.export}>
      {button("text", T.copyText)}
      {button("json", T.copyJson)}
      {button("csv", T.copyCsv, rows)}
      {button("svg", T.saveSvg, picture)}
    </div>
  );
}

/** By the old way where a page may not use the clipboard itself. */
export async function copy(text: string): Promise<void> {
  try {
    await navigator.clipboard.writeText(text);
  } catch {
    const box = document.createElement("textarea");
    box.value = text;
    document.body.append(box);
    box.select();
    const done = document.execCommand("copy");
    box.remove();
    if (!done) throw new Error(T.noCopying);
  }
}

function save(text: string, name: string) {
  const address = URL.createObjectURL(new Blob([text], { type: "image/svg+xml" }));
  const link = document.createElement("a");
  link.href = address;
  link.download = name;
  link.click();
  setTimeout(() => URL.revokeObjectURL(address), 10_000);
}

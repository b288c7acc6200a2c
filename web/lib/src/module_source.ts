// Where the module comes from: the file beside this one. The page's build puts another source with
// the same function in the place of this one.

import { importOfNode, isNode } from "./platform.js";

export async function moduleBytes(): Promise<BufferSource> {
  const url = new URL("./pokermath.wasm", import.meta.url);
  if (isNode()) {
    const { readFile } = await importOfNode<typeof import("node:fs/promises")>("fs/promises");
    return readFile(url) as Promise<Uint8Array<ArrayBuffer>>;
  }
  const response = await fetch(url);
  if (!response.ok) throw new Error(`${url.href} cannot be loaded: ${response.statusText}`);
  return response.arrayBuffer();
}

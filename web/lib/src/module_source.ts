// Where the module comes from: the file beside this one. The page's build puts another source with
// the same function in the place of this one.

import { importOfNode, isNode } from "./platform.js";

export async function moduleBytes(): Promise<BufferSource> {
  const url = new URL("./pokermath.wasm", import.meta.url);
  const bytes = await bytesAt(url);
  // Servers of single-page applications answer with a page where there is no such file.
  if (new TextDecoder().decode(bytes.subarray(0, 4)) !== "\0asm") {
    throw new Error(`${url.href} is no WebAssembly module`);
  }
  return bytes;
}

async function bytesAt(url: URL): Promise<Uint8Array<ArrayBuffer>> {
  if (isNode()) {
    const { readFile } = await importOfNode<typeof import("node:fs/promises")>("fs/promises");
    return readFile(url) as Promise<Uint8Array<ArrayBuffer>>;
  }
  const response = await fetch(url);
  if (!response.ok) throw new Error(`${url.href} cannot be loaded: ${response.statusText}`);
  return new Uint8Array(await response.arrayBuffer());
}

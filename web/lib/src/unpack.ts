// The module as a page has it that is one file.

type Bytes = Uint8Array<ArrayBuffer>;

// Newer browsers do it much faster by themselves.
const { fromBase64 = bySteps } = Uint8Array as { fromBase64?: (text: string) => Bytes };

function bySteps(text: string): Bytes {
  const characters = atob(text);
  const bytes = new Uint8Array(characters.length);
  for (let i = 0; i < bytes.length; ++i) bytes[i] = characters.charCodeAt(i);
  return bytes;
}

/** Undoes gzip and base64. */
export async function unpack(packed: string): Promise<ArrayBuffer> {
  const bytes = fromBase64.call(Uint8Array, packed);
  const stream = new Blob([bytes]).stream().pipeThrough(new DecompressionStream("gzip"));
  return new Response(stream).arrayBuffer();
}

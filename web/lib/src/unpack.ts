// The module as a page has it that is one file.

/** Undoes gzip and base64. */
export async function unpack(packed: string): Promise<ArrayBuffer> {
  const characters = atob(packed);
  const bytes = new Uint8Array(characters.length);
  for (let i = 0; i < bytes.length; ++i) bytes[i] = characters.charCodeAt(i);
  const stream = new Blob([bytes]).stream().pipeThrough(new DecompressionStream("gzip"));
  return new Response(stream).arrayBuffer();
}

// Unpacks gzipped bytes with `DecompressionStream` of browsers and Node.
import { Fault } from "./zorvela.js";

/** The largest unpacked file in bytes that the library accepts. */
export const LARGEST_INPUT = 256 * 2 ** 20;

/** A file that cannot be given to the library; `fault` is a member of `Fault`. */
export class InputError extends Error {
  constructor(fault) {
    super(Object.keys(Fault).find((name) => Fault[name] === fault));
    this.fault = fault;
  }
}

const isPartAt = (bytes, at) => bytes[at] === 0x1f && bytes[at + 1] === 0x8b;

/** Returns the fault by the error code of zlib. In Node a write succeeds before the bytes are checked. */
function nodeFault(error) {
  const code = error.code ?? error.cause?.code;
  if (code === undefined) return undefined;
  return code === "Z_BUF_ERROR" ? Fault.cutGzip : Fault.damagedGzip;
}

/** Returns the content of one gzip part, which must end where the bytes end. */
async function unpackPart(bytes, room) {
  const stream = new DecompressionStream("gzip");
  const chunks = [];
  let size = 0;
  const reading = (async () => {
    for (const reader = stream.readable.getReader(); ;) {
      const { done, value } = await reader.read();
      if (done) return;
      size += value.length;
      if (size > room) {
        await reader.cancel();
        throw new InputError(Fault.tooLarge);
      }
      chunks.push(value);
    }
  })();
  const writer = stream.writable.getWriter();
  // Damaged bytes fail while they are written, a cut file fails at the end.
  let fault = Fault.damagedGzip;
  const writing = (async () => {
    await writer.write(bytes);
    fault = Fault.cutGzip;
    await writer.close();
  })();
  const [read, written] = await Promise.allSettled([reading, writing]);
  if (read.status === "rejected" && read.reason instanceof InputError) throw read.reason;
  const failure = [read, written].find(({ status }) => status === "rejected");
  if (failure !== undefined) throw new InputError(nodeFault(failure.reason) ?? fault);
  return joined(chunks, size);
}

function joined(chunks, size) {
  if (chunks.length === 1) return chunks[0];
  const all = new Uint8Array(size);
  let at = 0;
  for (const chunk of chunks) {
    all.set(chunk, at);
    at += chunk.length;
  }
  return all;
}

/** Finds the places after `from` where another gzip part may begin. */
function* laterParts(bytes, from) {
  for (let at = bytes.indexOf(0x1f, from); at >= 0; at = bytes.indexOf(0x1f, at + 1))
    if (isPartAt(bytes, at) && bytes[at + 2] === 8) yield at;
}

// A file may have several parts, one after the other, and a stream reads only one. A part ends where the next mark of a
// part begins, if its check sum is right; a mark occurs by chance once in 16 MB.
const MOST_TRIALS = 10000;

async function unpackParts(bytes) {
  const chunks = [];
  let size = 0;
  let from = 0;
  let trials = 0;
  while (from < bytes.length) {
    let part;
    let next = bytes.length;
    for (const at of laterParts(bytes, from + 2)) {
      if (++trials > MOST_TRIALS) throw new InputError(Fault.damagedGzip);
      try {
        part = await unpackPart(bytes.subarray(from, at), LARGEST_INPUT - size);
        next = at;
        break;
      } catch (error) {
        if (error.fault === Fault.tooLarge) throw error;
      }
    }
    part ??= await unpackPart(bytes.subarray(from), LARGEST_INPUT - size);
    chunks.push(part);
    size += part.length;
    from = next;
  }
  return joined(chunks, size);
}

/** Returns the bytes, unpacked if they are gzipped. Throws an InputError. */
export async function unpacked(bytes) {
  if (!isPartAt(bytes, 0)) return bytes;
  try {
    return await unpackPart(bytes, LARGEST_INPUT);
  } catch (error) {
    const isMore = error.fault === Fault.damagedGzip && !laterParts(bytes, 2).next().done;
    if (!isMore) throw error;
    return unpackParts(bytes);
  }
}

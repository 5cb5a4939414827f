// Writes zip archives without compression: the saved files are small.

const CRC = Uint32Array.from({ length: 256 }, (_, value) => {
  for (let bit = 0; bit < 8; ++bit) value = value & 1 ? (value >>> 1) ^ 0xedb88320 : value >>> 1;
  return value;
});

const checkSum = (bytes) => ~bytes.reduce((sum, byte) => CRC[(sum ^ byte) & 0xff] ^ (sum >>> 8), -1) >>> 0;

/** Returns numbers, [value, size] each, as little-endian bytes. */
function numbers(...fields) {
  return Uint8Array.from(fields.flatMap(([value, size]) =>
    Array.from({ length: size }, (_, byte) => (value >>> (8 * byte)) & 0xff)));
}

const NAMES_IN_UTF8 = 0x800;
const FIRST_DAY = 0x21; // 1980-01-01: the same files give the same archive

/** Returns the archive of files [{name, bytes}] as a Blob. */
export function zipped(files) {
  const parts = [];
  const directory = [];
  let at = 0;
  for (const { name, bytes } of files) {
    const path = new TextEncoder().encode(name);
    const common = numbers([20, 2], [NAMES_IN_UTF8, 2], [0, 2], [0, 2], [FIRST_DAY, 2], [checkSum(bytes), 4],
                           [bytes.length, 4], [bytes.length, 4], [path.length, 2], [0, 2]);
    const entry = [numbers([0x04034b50, 4]), common, path, bytes];
    parts.push(...entry);
    directory.push(numbers([0x02014b50, 4], [20, 2]), common, numbers([0, 2], [0, 2], [0, 2], [0, 4], [at, 4]), path);
    at += entry.reduce((sum, part) => sum + part.length, 0);
  }
  const size = directory.reduce((sum, part) => sum + part.length, 0);
  const end = numbers([0x06054b50, 4], [0, 2], [0, 2], [files.length, 2], [files.length, 2], [size, 4], [at, 4], [0, 2]);
  return new Blob([...parts, ...directory, end], { type: "application/zip" });
}

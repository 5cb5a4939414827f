"""Prints the name of every test in the files given, as unittest takes it: module.Class.method."""

import ast
import os
import sys


def tests_in(path):
    with open(path, encoding="utf-8") as file:
        tree = ast.parse(file.read(), path)
    classes = {node.name: node for node in tree.body if isinstance(node, ast.ClassDef)}
    module = os.path.splitext(os.path.basename(path))[0]
    for name, node in classes.items():
        for method in node.body:
            if isinstance(method, ast.FunctionDef) and method.name.startswith("test"):
                yield ".".join((module, name, method.name))


if __name__ == "__main__":
    for file_name in sorted(sys.argv[1:]):
        for test in tests_in(file_name):
            print(test)

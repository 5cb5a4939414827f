"""The notebook of examples/ runs and gives the outputs in it. ZORVELA_UPDATE=1 writes the current outputs."""
import copy
import os
import pathlib
import shutil
import unittest

import nbformat
from nbconvert.preprocessors import ExecutePreprocessor
from zorvela_tests import folder, program

NOTEBOOK = program.SOURCE / "examples" / "notebook.ipynb"


def outputs(cell):
    """The outputs of a cell, but not the bytes of pictures, which depend on fonts."""
    shown = []
    for output in cell.get("outputs", []):
        if output["output_type"] == "stream":
            shown.append((output["name"], output["text"]))
            continue
        for kind, text in sorted(output["data"].items()):
            shown.append((kind, "" if kind.startswith("image/") else text))
    return shown


def without_times(notebook):
    for cell in notebook.cells:
        cell["metadata"] = {}
    notebook.metadata = {"kernelspec": notebook.metadata["kernelspec"], "language_info": {"name": "python"}}
    return notebook


@unittest.skipIf(os.environ.get("ZORVELA_SANITIZE"), "the other tests do the same with fewer libraries")
class Notebook(folder.InFolder):
    def test_outputs_are_real(self):
        examples = pathlib.Path(shutil.copytree(NOTEBOOK.parent, self.path("examples")))
        stored = nbformat.read(NOTEBOOK, as_version=4)
        made = copy.deepcopy(stored)
        ExecutePreprocessor(timeout=300, kernel_name="python3").preprocess(made, {"metadata": {"path": str(examples)}})
        if os.environ.get("ZORVELA_UPDATE"):
            nbformat.write(without_times(made), NOTEBOOK)
            return
        for old, new in zip(stored.cells, made.cells):
            self.assertEqual(outputs(old), outputs(new), old["source"])
        kinds = [kind for cell in stored.cells for kind, _ in outputs(cell)]
        self.assertIn("image/png", kinds)
        self.assertIn("text/html", kinds)
        self.assertNotIn("stderr", kinds)

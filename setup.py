"""The Python package as a wheel; script/python builds and tests it."""
import pathlib
import re

from skbuild import setup

ROOT = pathlib.Path(__file__).parent

setup(
    name="zorvela",
    version=re.search(r"VERSION (\S+)", (ROOT / "CMakeLists.txt").read_text().split("project(zorvela ")[1]).group(1),
    description="Cis/trans prediction for prolines from chemical shifts",
    license="MIT",
    packages=["zorvela"],
    package_dir={"": "python"},
    python_requires=">=3.9",
    extras_require={"frames": ["pandas"], "progress": ["tqdm"]},
    cmake_args=["-DZORVELA_PYTHON_PACKAGE=ON"],
    cmake_install_dir="python/zorvela",
    cmake_install_target="install/strip",
)

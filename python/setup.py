"""The wheel: for any Python 3, and for the machine whose library lies in the package.

The version is that of the library; whoever builds the package gives it in $VNCORE_VERSION.
"""
import os

from setuptools import Distribution, setup
from wheel.bdist_wheel import bdist_wheel


class MachineDistribution(Distribution):
    def has_ext_modules(self) -> bool:
        """The library is machine code, though no extension module of Python's."""
        return True


class MachineWheel(bdist_wheel):
    def get_tag(self) -> tuple:
        return "py3", "none", super().get_tag()[2]


setup(version=os.environ["VNCORE_VERSION"], distclass=MachineDistribution,
      cmdclass={"bdist_wheel": MachineWheel})

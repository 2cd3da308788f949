"""What the documentation of every module says about its files."""

from __future__ import annotations


class ModuleDocFragment:
    """The engine adds this to the documentation of a module that extends it. The module describes `redact` itself."""

    DOCUMENTATION = r"""
options:
  path:
    description: The policy file. It must exist. Give either this or I(paths).
    type: path
  paths:
    description: Several policy files.
    type: list
    elements: path
  redact:
    type: list
    elements: str
    default: []
  executable:
    description: The program C(zupolicy), as a path or as a name that is found in C(PATH).
    type: path
    default: zupolicy
requirements:
  - zupolicy on the managed machine
  - Python 3.9 or later on the managed machine, without other packages
"""

"""The library's functions, variables and classes by their names, and the platform's operations."""

import collections
import re

from hookreference.source import Source
from hookreference.vocabulary import BELOW, METADATA


def fail(token, message):
    raise SystemExit(f"{token}: {message}")


class Library:
    def __init__(self, root):
        self.source = Source(root, "common")
        self.platform = Source(root, "platform")
        self.functions = collections.defaultdict(list)
        self.variables = collections.defaultdict(list)
        self.operations = collections.defaultdict(list)
        for function in self.source.functions:
            if function.body is not None:
                self.functions[function.name].append(function)
        for variable in self.source.variables:
            self.variables[variable.name].append(variable)
        for operation in self.platform.functions:
            if operation.body is None and operation.file != "platform/IMetadata.h":
                self.operations[operation.name].append(operation)
        self.constants = {v.name for v in self.platform.variables if re.match("k[A-Z]", v.name)}
        self._check_dialect()

    def _check_dialect(self):
        """Nothing reaches metadata or events but by the words of vocabulary.py."""
        for function in self.source.functions:
            if function.file == "common/tags/Metadata.h" and function.name not in METADATA:
                raise SystemExit(f"scripts/hookreference/vocabulary.py lacks {function.name}")
            for token in function.body or []:
                for file, names in BELOW.items():
                    if token.text in names and token.file != file:
                        fail(token, f"{token.text} is used through {file} alone")

    def candidates(self, name, before, qualifier, function):
        """The functions that a name in `function`'s body may be, by what stands before it."""
        found = self.functions.get(name, [])
        if before in (".", "->"):
            return [f for f in found if f.owner]
        if before == "::" and qualifier in self.source.classes:
            return [f for f in found if f.owner == qualifier]
        if before == "::" and qualifier not in ("hesk", "log"):
            return []
        mine = [f for f in found if f.owner and f.owner == function.owner]
        local = [f for f in found if f.is_local and f.file == function.file]
        return mine or local or [f for f in found if not f.is_local and not f.owner]

    def constructors(self, name):
        """What the making and the end of an object of a class runs."""
        is_class = name in self.source.classes
        return [f for f in self.functions.get(name, []) if f.owner == name] if is_class else []

    def variable(self, name, file):
        """The variables of a name that a file sees."""
        found = self.variables.get(name, [])
        return [v for v in found if v.file == file] or [v for v in found if v.file.endswith(".h")]

    def included(self, file):
        """The headers that a file sees."""
        seen, waiting = set(), [file]
        while waiting:
            header = waiting.pop()
            if header not in seen:
                seen.add(header)
                waiting += self.source.includes.get(header) or self.platform.includes.get(header, [])
        return seen

"""What an exported member uses, itself and in the functions that it calls.

Each function is walked under what its parameters stand for in the call. A place that cannot be
understood is an error, not a gap.
"""

import dataclasses

from hookreference import vocabulary
from hookreference.library import fail
from hookreference.values import KEYWORDS, Body, call_arguments
from hookreference.vocabulary import ANY, PROPERTIES, UNNAMED, Use, Value

TEXT_USES = {"eventValue": "event read", "setEvent": "event set", **dict.fromkeys(PROPERTIES, "property")}


class Uses:
    """The uses of any member of a library."""

    def __init__(self, library):
        self.library = library
        self.understood = set()  # tokens that some member is seen to use

    def of(self, owner, name):
        """The uses of a member, and the names of the containers that it is handed."""
        functions = [f for f in self.library.functions[name] if f.owner == owner]
        if not functions:
            raise SystemExit(f"{owner}::{name} is exported and defined nowhere")
        walk, containers = Walk(self.library), []
        for function in functions:
            containers += [p for p, words in function.parameters
                           if {"IMetadata", "camera_metadata"} & set(words)]
            bound = {p: frozenset([Value("container", p)]) for p in containers}
            walk.into(function, bound, name)
        self.understood |= walk.understood
        if any(use.container == UNNAMED for use in walk.uses) and len(containers) != 1:
            raise SystemExit(f"{owner}::{name}: which container a function of a table takes cannot be told")
        return {named(use, containers) for use in walk.uses}, containers

    def check_nothing_is_overlooked(self):
        """No tag, key or property stands in the library but where a member has been seen to use it."""
        for function in self.library.source.functions:
            body = function.body or []
            for index, token in enumerate(body):
                is_tag = index > 1 and (body[index - 2].text, body[index - 1].text) == ("tags", "::")
                is_label = index > 2 and body[index - 3].text == "case"
                is_use = (is_tag and not is_label) or token.text in TEXT_USES
                if is_use and token not in self.understood:
                    fail(token, f"no exported member is seen to use {token.text} here")


def named(use, containers):
    """A container that came by a function pointer is the one that the member has."""
    return dataclasses.replace(use, container=containers[0]) if use.container == UNNAMED else use


class Walk:
    """Goes through a member and everything that it calls."""

    def __init__(self, library):
        self.library = library
        self.uses = set()
        self.understood = set()
        self.walked = set()

    def into(self, function, bound, step):
        # A helper in a header is part of the step that calls it.
        step = function.name if function.file.endswith(".cpp") else step
        self.tokens(function, function.body, bound, step)

    def tokens(self, function, tokens, bound, step):
        key = (id(tokens), frozenset(bound.items()), step)
        if key in self.walked:
            return
        self.walked.add(key)
        body = Body(self.library, function, tokens, bound, step)
        for index, token in enumerate(tokens):
            if token.is_name and token.text not in KEYWORDS:
                self.name(body, index)

    def name(self, body, index):
        token = body.tokens[index]
        before = body.tokens[index - 1].text if index > 0 else ""
        is_member = before in (".", "->")
        arguments, template = call_arguments(body.tokens, index)
        if arguments is not None and not is_member:
            if token.text in vocabulary.METADATA:
                self.metadata(body, token, arguments)
            if token.text in TEXT_USES:
                self.texts(body, token, (template or arguments)[:1])
                return
        if token.text not in vocabulary.METADATA or is_member:
            callees = body.callees(body.tokens, index)
            for callee in callees:
                self.into(callee, body.bind(callee, template, arguments), body.step)
            if not callees and not is_member:
                self.table(body, token)
        if arguments is not None:
            self.operation(body, index, arguments)

    def use(self, kind, name, container, step):
        self.uses.add(Use(kind, name, container, step))

    def texts(self, body, token, parts):
        found = [v for part in parts for v in body.value(part) if v.kind == "text"]
        if not found:
            fail(token, f"which text {token.text} is given cannot be told")
        self.understood.add(token)
        for text in found:
            self.use(TEXT_USES[token.text], text.name, "", text.step)

    def metadata(self, body, token, arguments):
        name = token.text
        for kind, table in (("read", vocabulary.READS), ("write", vocabulary.WRITES)):
            if name in table:
                container, tag = (arguments[position] for position in table[name])
                tags = [v for v in body.value(tag) if v.kind == "tag"]
                if not tags:
                    fail(token, f"which tag {name} is given cannot be told")
                self.understood |= {tag.token for tag in tags}
                self.on(kind, body, token, container, [(tag.name, tag.step) for tag in tags])
        for kind, table in (("read", vocabulary.READS_ANY), ("write", vocabulary.WRITES_ANY)):
            if name in table:
                self.on(kind, body, token, arguments[table[name]], [(ANY, body.step)])

    def on(self, kind, body, token, container, tags):
        containers = [v.name for v in body.value(container) if v.kind == "container"]
        if not containers:
            fail(token, f"which container {token.text} is given cannot be told")
        for name in containers:
            for tag, step in tags:
                self.use(kind, tag, name, step)

    def table(self, body, token):
        """What a table at file level holds functions for: they are called through it."""
        if token.text in body.locals or token.text in body.bound:
            return
        for variable in self.library.variable(token.text, body.function.file):
            self.tokens(body.function, variable.initialiser, {}, body.step)

    def operation(self, body, index, arguments):
        """An operation of the platform: of those of one name that whose header the file includes."""
        token = body.tokens[index]
        before, qualifier = (body.tokens[index - k].text if index >= k else "" for k in (1, 2))
        if token.text == "getStaticCharacteristics" or (before, qualifier) == ("::", "std"):
            return  # listed as a container; of the standard library
        found = self.library.operations.get(token.text, [])
        if before == "::" and qualifier in self.library.platform.classes:
            found = [o for o in found if o.owner == qualifier]
        else:
            seen = self.library.included(token.file)
            found = [o for o in found if o.file in seen and bool(o.owner) == (before in (".", "->"))]
        if len({o.owner for o in found}) > 1:
            fail(token, f"which {token.text} of the platform is called cannot be told")
        for operation in found[:1]:
            owner = operation.owner + "::" if operation.owner else ""
            which = [t.text for part in arguments for t in part if t.text in self.library.constants]
            self.use("platform", f"{owner}{operation.name}({', '.join(which)})", "", body.step)
